#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// Puts blocks of plain text under each other: blank lines between them, and at their left what the
/// lists and quotes around them ask for.
class PlainTextLines {
public:
    /// A level of nesting. `marker` stands in its first line, blanks of the same width in the
    /// others.
    void openLevel(std::string marker);
    void openLevel(std::size_t width);
    /// A marker that found no text gets a line of its own.
    void closeLevel();

    /// The next block is set apart by a blank line, or not.
    void setApart(bool isApart) { m_isApart = isApart; }
    /// Writes a block of one or more lines, without the blanks at the ends of its lines.
    void write(std::string_view block);

    /// Everything, ended by one line feed unless it is empty.
    std::string take();

private:
    struct Level {
        std::string marker;
        std::size_t width;
        bool isDue;  // the marker is still to be written
    };
    void beginLine();

    std::string m_text;
    std::vector<Level> m_levels;
    std::size_t m_firstDue = 0;  // before it no marker is due
    bool m_isApart = false;
};

/// Columns that a text takes in a font of fixed width.
std::size_t columnsOf(std::string_view text);

}  // namespace corvel
