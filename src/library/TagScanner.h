#pragma once

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
    explicit TagScanner(std::string_view text);

    /// Every distinct path with all its prefixes, sorted by bytes.
    std::vector<std::string> paths() const;

private:
    std::string m_copy;
    std::string_view m_text;  // without code
};

}  // namespace corvel
