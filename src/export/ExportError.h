#pragma once

#include "app/settings/Localisation.h"

#include <stdexcept>
#include <string>

namespace corvel {

/// Why an export failed. `what()` is the detail in the words of the library or system below; of a
/// file that was not written, a sentence for the user.
class ExportError : public std::runtime_error {
public:
    enum class Kind {
        epubCreationFailed,
        encodingFailed,
        fileWriteFailed,
        tooComplex,      ///< the Markdown takes the parser too long
        platformFailed,  ///< web view, printing or file system; `what()` says what
    };

    explicit ExportError(Kind kind, const std::string& detail = {})
        : std::runtime_error(detail), m_kind(kind) {}

    Kind kind() const { return m_kind; }
    /// The sentence for the user.
    std::string description(const Localisation& texts) const;

private:
    Kind m_kind;
};

}  // namespace corvel
