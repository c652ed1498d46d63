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
/// bytes. As nobody writes such tags, but a hostile file may: a path is followed for 64 segments
/// and 1,000 bytes, and a text gives 10,000 paths.
std::vector<std::string> tagPathsIn(std::string_view content);

/// First text of the note for a list row: the lines but the one that gives the title, Markdown's
/// marks dropped (task boxes and numbers stay), white space joined to single spaces, at most 200
/// characters. A text of one line gives an empty excerpt. Only the first 8 KB are looked at.
std::string excerptOf(std::string_view content);

}  // namespace corvel
