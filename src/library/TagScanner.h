#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// Finds the tag paths of a text in one pass over it, as three regular expressions applied one
/// after the other would:
///
///     ```[\s\S]*?```                   fenced code, taken out; what stands around it is joined
///     `[^`]+`                          code spans, taken out of what is left
///     (?:^|\s)#([\w]+(?:/[\w]+)*)      the tags in the rest; ^ is the start of the text
class TagScanner {
public:
    // What goes beyond is no tag: a note has all prefixes of its tags.
    static constexpr std::size_t kMostSegments = 64;
    static constexpr std::size_t kLongestPath = 1000;
    static constexpr std::size_t kMostPaths = 10'000;

    explicit TagScanner(std::string_view text);

    /// Every distinct path with all its prefixes, sorted by bytes.
    std::vector<std::string> paths() const;

private:
    std::string m_copy;
    std::string_view m_text;  // without code
};

}  // namespace corvel
