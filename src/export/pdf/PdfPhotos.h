#pragma once

#include "export/pdf/Qpdf.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// The JPEG files that are embedded in the page, each once, as base64.
std::vector<std::string> photosIn(std::string_view page);

/// The web view stores the pixels of every picture, which makes a photo ten times as large as its
/// file. Where the pixels of a picture are those of one of `photos` (as above), byte for byte, the
/// file takes their place; other pictures stay as they are.
void restorePhotos(QPDF& pdf, const std::vector<std::string>& photos);

}  // namespace corvel
