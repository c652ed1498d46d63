#pragma once

#include "platform/TextFinder.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// Finds the texts that contain all of several folded terms: the longest, which is mostly the
/// rarest, is looked for and the others only where that was found.
class TermFinder {
public:
    explicit TermFinder(std::vector<std::string> terms);

    /// Where the longest term stands at or after `from`, or npos.
    std::size_t findIn(std::string_view text, std::size_t from = 0) const {
        return m_longest.findIn(text, from);
    }
    /// Whether the terms beside the longest are in the text of one note.
    bool hasOthers(std::string_view text) const;
    bool hasAll(std::string_view text) const {
        return findIn(text) != std::string_view::npos && hasOthers(text);
    }

private:
    TextFinder m_longest;
    std::vector<TextFinder> m_others;
};

}  // namespace corvel
