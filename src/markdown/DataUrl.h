#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace corvel {

/// "data:" + `mimeType` + ";base64," + `bytes` in standard Base64 without line breaks.
std::string dataUrl(std::string_view mimeType, std::span<const std::uint8_t> bytes);

}  // namespace corvel
