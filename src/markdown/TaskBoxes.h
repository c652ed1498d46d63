#pragma once

#include <cmark-gfm/node.h>

#include <string_view>

namespace corvel {

/// Corrects which task items of a tree are done. The parser (cmark-gfm 0.29) takes an item for done
/// when "[x]" stands anywhere in its first line, behind the open box too: "- [ ] see [x]".
/// `markdown` is the text that `root` was parsed from; lines without both boxes cost a search for
/// the open one.
void correctTaskBoxes(cmark_node* root, std::string_view markdown);

}  // namespace corvel
