#include "export/Outcome.h"

#include <glib.h>

namespace corvel {

ExportOutcome encoded(std::string text) {
    const bool isText = g_utf8_validate_len(text.data(), text.size(), nullptr) != FALSE;
    if (!isText) return ExportError(ExportError::Kind::encodingFailed);
    return text;
}

}  // namespace corvel
