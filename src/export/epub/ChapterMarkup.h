#pragma once

#include "export/epub/BookParts.h"

#include <string>
#include <vector>

namespace corvel {

/// A note's body as well-formed XML, and its headings.
struct ChapterMarkup {
    std::string body;
    std::vector<TOCEntry> contents;
};

/// Start tags of void elements get their self-closing form; nothing else changes.
std::string withSelfClosedTags(const std::string& html);

/// `html` for a book's chapter. Where closing the void elements suffices, the body is just that;
/// otherwise it is parsed as HTML and made valid. `html` is UTF-8.
ChapterMarkup chapterMarkup(const std::string& html);

}  // namespace corvel
