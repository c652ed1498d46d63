#pragma once

#include "library/LinkError.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvel::linkedText {

// Between the bytes of a linked file and the text of its note, which has LF line ends and no
// byte-order mark.

/// What keeps `bytes` from being a note's text: none for UTF-8 without NUL bytes.
std::optional<LinkFault> faultIn(std::string_view bytes);

/// The note's text; `bytes` must have no fault.
std::string decoded(std::string_view bytes);

/// The file's bytes for `text`, where the file held `base`: its byte-order mark stays, lines that
/// were there keep their line ends, new ones get the usual end of the file. The text of `base`
/// itself gives `base`.
std::string encoded(std::string_view text, std::string_view base);

}  // namespace corvel::linkedText
