#pragma once

#include "platform/Date.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// One heading of the note. Both tables of contents are flat: the level is carried, not used.
struct TOCEntry {
    std::string id;  ///< of the element in the chapter
    std::string title;
    int level = 1;

    bool operator==(const TOCEntry&) const = default;
};

/// What the book's files say of the note.
struct BookRecord {
    std::string uuid;   ///< upper case, 36 characters
    std::string title;  ///< never empty: a book must have one
    Date modifiedAt;
    std::vector<TOCEntry> contents;
};

/// The text files of an EPUB 3 book with one chapter and, for older readers, an NCX table of
/// contents. The templates are fixed, byte for byte.
namespace bookparts {

std::string_view mimetype();
std::string_view container();
std::string package(const BookRecord& book);
std::string ncx(const BookRecord& book);
std::string navigation(const BookRecord& book);
std::string chapter(std::string_view body);
/// The style sheet of a book without the theme's.
std::string_view plainStylesheet();

}  // namespace bookparts

}  // namespace corvel
