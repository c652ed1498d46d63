#include "export/ExportFileName.h"

#include "platform/Handle.h"
#include "platform/Text.h"

#include <glib.h>

#include <algorithm>

namespace corvel {

namespace {

constexpr std::size_t kLongestName = 255;  // bytes, of every file system in use
constexpr std::size_t kRoomForNumber = 12;

std::string withExtension(const std::string& stem, ExportFormat format) {
    return stem + "." + std::string(fileExtension(format));
}

std::string usableStem(const std::string& title) {
    std::string stem = text::repaired(title);
    std::ranges::replace(stem, '/', '-');
    std::erase(stem, '\0');
    stem = text::prefixByBytes(stem, kLongestName - kRoomForNumber);
    if (stem.find_first_not_of(". \t\r\n") == std::string::npos) return kUntitledExport;
    return stem;
}

std::string folded(const std::string& name) {
    const Handle<gchar, g_free> text(
        g_utf8_casefold(name.data(), static_cast<gssize>(name.size())));
    return text.get();
}

}  // namespace

std::string suggestedFileName(const std::string& title, ExportFormat format) {
    return withExtension(title.empty() ? kUntitledExport : title, format);
}

std::string ExportFileNames::next(const std::string& title) {
    const std::string stem = usableStem(title);
    std::string name = withExtension(stem, m_format);
    for (int number = 2; !m_taken.insert(folded(name)).second; ++number) {
        name = withExtension(stem + " " + std::to_string(number), m_format);
    }
    return name;
}

}  // namespace corvel
