#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

// What the library derives from a note's text. All are pure functions of UTF-8 text.

/// The title of a note made from text: the first line that begins with "# " after trimming spaces
/// and tabs, without those two characters; else the first 100 characters of the first line that is
/// not empty; else "Untitled".
std::string titleFromContent(std::string_view content);

/// Every distinct tag path of the text outside fenced and inline code, with all prefixes, sorted by
/// bytes.
std::vector<std::string> tagPathsIn(std::string_view content);

/// First text of the note for a list row: the lines after the title line, Markdown's marks dropped,
/// white space joined to single spaces, at most 200 characters. A text of one line gives an empty
/// excerpt.
std::string excerptOf(std::string_view content);

}  // namespace corvel
