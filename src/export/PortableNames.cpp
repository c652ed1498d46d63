#include "export/PortableNames.h"

#include "export/ExportFileName.h"
#include "platform/Handle.h"
#include "platform/Text.h"

#include <glib.h>

#include <algorithm>
#include <array>

namespace corvel {

namespace {

constexpr std::size_t kLongestStem = 180;
constexpr std::size_t kLongestExtension = 16;
constexpr std::string_view kRefused = "/\\:*?\"<>|";
constexpr unsigned char kFirstPrintable = 0x20;
constexpr unsigned char kDelete = 0x7F;

using OwnedText = Handle<gchar, g_free>;

bool isRefused(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return value < kFirstPrintable || value == kDelete || kRefused.find(byte) != kRefused.npos;
}

std::string folded(std::string_view name) {
    const OwnedText plain(g_utf8_casefold(name.data(), static_cast<gssize>(name.size())));
    const OwnedText composed(g_utf8_normalize(plain.get(), -1, G_NORMALIZE_ALL));
    return composed ? composed.get() : plain.get();
}

std::string trimmed(const std::string& text) {
    constexpr std::string_view kEnds = " .";  // what some systems drop from the end of a name
    const auto begin = text.find_first_not_of(kEnds);
    if (begin == std::string::npos) return {};
    return text.substr(begin, text.find_last_not_of(kEnds) - begin + 1);
}

// Names of devices on some systems, also with an extension.
bool isDevice(std::string_view stem) {
    const auto name = text::lowercased(stem.substr(0, stem.find('.')));
    constexpr std::array<std::string_view, 4> kPlain{"con", "prn", "aux", "nul"};
    if (std::find(kPlain.begin(), kPlain.end(), name) != kPlain.end()) return true;
    return name.size() == 4 && (name.starts_with("com") || name.starts_with("lpt")) &&
           name[3] >= '0' && name[3] <= '9';
}

std::string usable(std::string_view text) {
    std::string stem = text::repaired(text);
    std::replace_if(stem.begin(), stem.end(), isRefused, '-');
    stem = trimmed(std::string(text::prefixByBytes(trimmed(stem), kLongestStem)));
    if (stem.empty()) stem = kUntitledExport;
    if (isDevice(stem)) stem.insert(0, "_");
    return stem;
}

}  // namespace

void PortableNames::reserve(std::string_view name) {
    take(name);
}

bool PortableNames::take(std::string_view name) {
    return m_taken.insert(folded(name)).second;
}

std::string PortableNames::next(std::string_view title, std::string_view extension) {
    const auto stem = usable(title);
    std::string ending = extension.empty() ? std::string() : usable(extension.substr(1));
    if (ending.size() > kLongestExtension) ending.clear();
    if (!extension.empty() && !ending.empty()) ending.insert(0, ".");
    std::string name = stem + ending;
    if (take(name)) return name;
    auto& number = m_last.try_emplace(folded(name), 1).first->second;
    do {
        name = stem + " " + std::to_string(++number) + ending;
    } while (!take(name));
    return name;
}

}  // namespace corvel
