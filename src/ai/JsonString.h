#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// A place in a JSON text: keys of objects from the outside in, and `kFirstElement` for the first
/// element of an array. The keys have to be static texts.
using JsonPath = std::vector<std::string_view>;
inline constexpr std::string_view kFirstElement{};

/// The strings at `paths`, in their order, none where there is no string; no strings at all when
/// `text` is not valid JSON. No tree is built: what a server sends costs no memory by its depth.
std::vector<std::optional<std::string>> jsonStringsAt(std::string_view text,
                                                      const std::vector<JsonPath>& paths);

}  // namespace corvel
