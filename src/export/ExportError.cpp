#include "export/ExportError.h"

#include "export/ExportTexts.h"

namespace corvel {

std::string ExportError::description(const Localisation& texts) const {
    switch (m_kind) {
        case Kind::epubCreationFailed:
            return std::string("EPUB creation failed: ") + what();
        case Kind::encodingFailed:
            return "Failed to encode content";
        case Kind::fileWriteFailed:
            return std::string("Failed to write file") + (*what() != 0 ? "\n" : "") + what();
        case Kind::tooComplex:
            return texts(texts::exportTooComplex);
        case Kind::platformFailed:
            break;
    }
    return what();
}

}  // namespace corvel
