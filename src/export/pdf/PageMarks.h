#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// A link, a heading or another target of a link in the printed page. Before printing, each gets a
/// background colour of its own; afterwards the coloured rectangles tell where it came to lie, and
/// are taken away.
struct PageMark {
    std::string href;  ///< of a link; empty for others
    std::string id;    ///< of a heading or target; may be empty
    int level = 0;     ///< of a heading, 1 to 6; 0 for others
    std::string text;  ///< of a heading
};

/// The colours of marks: `red` with the mark's number as green and blue.
struct MarkColors {
    int red = 253;
    static constexpr int kMost = 65536;

    /// Colours that `page` does not ask for by their numbers itself.
    static MarkColors unusedIn(std::string_view page);
};

/// The body of the function that makes the loaded page ready for paper, once its images are there
/// or a time limit has passed: headings are kept with what follows, marks are coloured. It returns
/// the marks in the order of their numbers.
std::string markScript(const MarkColors& colors);

/// What the function returned. Anything but a list of marks gives none.
std::vector<PageMark> marksFrom(const std::string& json);

}  // namespace corvel
