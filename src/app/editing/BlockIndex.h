#pragma once

#include "app/editing/BlockState.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvel::editing {

/// Knows what each line of a text starts in, so that a key in a long note needs a look at its own
/// line only. Lines are counted from zero and are read when they are first asked for.
class BlockIndex {
public:
    /// Gives the start of a line, at least some hundred bytes of it; empty past the last line.
    using LineReader = std::function<std::string(int line)>;

    explicit BlockIndex(LineReader reader) : m_reader(std::move(reader)) {}

    /// The state `line` starts in. None when more than `mostLines` would have to be read for the
    /// answer; they are read, and the next call goes on from there.
    std::optional<BlockState> stateAt(int line, int mostLines = kMostLines);

    /// After a change of the text that began in `line`: `removed` line ends went, `added` came.
    void textChanged(int line, int removed, int added);
    void clear() { m_states.clear(); }

    static constexpr int kMostLines = 4000;

private:
    BlockState firstState() const { return BlockState::atStart(m_reader(0), m_reader(1)); }

    LineReader m_reader;
    std::vector<BlockState> m_states;  // of the lines known so far
};

}  // namespace corvel::editing
