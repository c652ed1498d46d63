#include "app/editing/BlockIndex.h"

#include <algorithm>
#include <cstddef>

namespace corvel::editing {

std::optional<BlockState> BlockIndex::stateAt(int line, int mostLines) {
    const auto wanted = static_cast<std::size_t>(std::max(line, 0));
    if (m_states.empty()) m_states.push_back(firstState());
    for (int read = 0; m_states.size() <= wanted; ++read) {
        if (read == mostLines) return std::nullopt;
        const auto last = m_states.size() - 1;
        m_states.push_back(m_states[last].after(m_reader(static_cast<int>(last))));
    }
    return m_states[wanted];
}

void BlockIndex::textChanged(int line, int removed, int added) {
    const auto first = static_cast<std::size_t>(line);
    // The second line decides whether the first opens front matter.
    if (first < 2 && (m_states.empty() || m_states.front() != firstState())) return clear();
    const auto behind = first + 1 + static_cast<std::size_t>(removed);
    if (behind >= m_states.size()) {
        m_states.resize(std::min(m_states.size(), first + 1));
        return;
    }
    const BlockState before = m_states[behind];
    const auto at = [this](std::size_t index) {
        return m_states.begin() + static_cast<std::ptrdiff_t>(index);
    };
    m_states.erase(at(first + 1), at(behind));
    m_states.insert(at(first + 1), static_cast<std::size_t>(added), BlockState{});
    const auto last = first + static_cast<std::size_t>(added);
    for (auto i = first; i <= last; ++i) {
        const auto next = m_states[i].after(m_reader(static_cast<int>(i)));
        if (i == last && next == before) return;  // what follows stays as it was
        m_states[i + 1] = next;
    }
    m_states.resize(last + 2);
}

}  // namespace corvel::editing
