#pragma once

#include "export/Exporter.h"

#include <string>

namespace corvel {

/// `text` as the bytes of a file, or `encodingFailed` when it is not UTF-8.
ExportOutcome encoded(std::string text);

}  // namespace corvel
