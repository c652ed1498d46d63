#pragma once

#include "model/Tag.h"

#include <string>
#include <vector>

namespace corvel {

/// The roots of the tree that `fullPaths` span, with fresh ids; siblings sorted by name in
/// `language`
/// ("pl" or "en").
std::vector<Tag> buildTagTree(const std::vector<std::string>& fullPaths, const char* language);

}  // namespace corvel
