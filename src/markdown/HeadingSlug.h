#pragma once

#include <string>
#include <string_view>

namespace corvel {

/// The identifier of a heading: lower case without diacritics, letters, digits and hyphens only,
/// a hyphen for each run of white space, none at the ends. Empty when nothing is left.
std::string headingSlug(std::string_view plainText);

}  // namespace corvel
