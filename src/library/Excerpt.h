#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvel {

/// Gathers the plain text of Markdown lines for a row of the list. A light reading: a row shows a
/// glimpse, so a mark that is taken for text, or the other way, does no harm.
class Excerpt {
public:
    /// `line` is one line without its end, trimmed.
    void addLine(std::string_view line);
    bool isFull() const;
    std::string take();

private:
    void addInline(std::string_view text);
    std::size_t addBeyondAscii(std::string_view text, std::size_t position);
    std::size_t addMark(std::string_view text, std::size_t position);
    std::size_t addLink(std::string_view text, std::size_t position);
    void add(char byte);

    std::string m_text;
    std::size_t m_codePoints = 0;
    bool m_isSpaceDue = false;
};

}  // namespace corvel
