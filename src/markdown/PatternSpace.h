#pragma once

#include <cstddef>
#include <string_view>

namespace corvel {

/// Bytes of the white-space character at `position` of UTF-8 `text`, as ICU's "\s" has it (the
/// property White_Space); 0 when there is none.
std::size_t spaceLengthAt(std::string_view text, std::size_t position);

/// The first position from `position` on that holds no white space.
std::size_t skipSpaces(std::string_view text, std::size_t position);

}  // namespace corvel
