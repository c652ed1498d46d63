#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvel {

/// The page that shows a rendered note, and the scripts that are run in it.
class PreviewPage {
public:
    /// The complete page. Nothing in `stylesheet` gets out of its style element.
    static std::string html(std::string_view stylesheet, std::string_view body);
    /// "sha256-…" of the page's script: what a content security policy names to let it run.
    static std::string scriptHash();

    /// Replaces the shown body.
    static std::string updateScript(std::string_view body);
    /// Replaces child nodes `firstNode` up to `endNode` of the shown body by `html`.
    static std::string replaceScript(std::size_t firstNode,
                                     std::size_t endNode,
                                     std::string_view html);
    /// Run once in a new page, before the first body: keeps the reader's place when images arrive
    /// late, and the images that a new body has in common with the old one.
    static const std::string& placeScript();
    /// Scrolls to a share, 0..1, of the scrollable height.
    static std::string scrollScript(double percent);
    /// Scrolls to the element with the id `fragment`.
    static std::string jumpScript(std::string_view fragment);
};

}  // namespace corvel
