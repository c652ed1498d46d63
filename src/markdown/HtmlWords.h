#pragma once

#include <string>
#include <string_view>

namespace corvel {

/// Adds what a reader sees of raw HTML to `text`: the words between the tags, blocks and rows of
/// tables on lines of their own, cells apart. Comments, scripts and styles are left out. `html` may
/// be a single tag or not well-formed.
void appendHtmlWords(std::string& text, std::string_view html);

}  // namespace corvel
