#include "markdown/LocalImage.h"

#include "platform/FileBytes.h"
#include "platform/FileDescriptor.h"
#include "platform/Paths.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

namespace corvel {

namespace {

constexpr std::size_t kSizeLimit = std::size_t{64} * 1024 * 1024;

constexpr std::array<std::pair<std::string_view, std::string_view>, 9> kMimeTypes = {{
    {"jpg", "image/jpeg"},
    {"jpeg", "image/jpeg"},
    {"gif", "image/gif"},
    {"webp", "image/webp"},
    {"svg", "image/svg+xml"},
    {"bmp", "image/bmp"},
    {"tif", "image/tiff"},
    {"tiff", "image/tiff"},
    {"heic", "image/heic"},
}};

bool liesIn(const std::filesystem::path& path, const std::filesystem::path& folder) {
    return std::ranges::mismatch(folder, path).in1 == folder.end();
}

// By where the open file really is, so that no link leads into a closed folder.
bool isAllowed(int file) {
    std::error_code error;
    const auto real = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), error);
    if (error) return false;
    for (const char* closed : {"/proc", "/sys", "/dev"}) {
        if (liesIn(real, closed)) return false;
    }
    const auto own = std::filesystem::weakly_canonical(paths::applicationSupport(), error);
    return !error && !liesIn(real, own);
}

}  // namespace

std::string_view imageMimeType(std::string_view path) {
    const std::size_t dot = path.rfind('.');
    if (dot == std::string_view::npos) return "image/png";
    std::string extension(path.substr(dot + 1));
    std::ranges::transform(extension, extension.begin(), g_ascii_tolower);
    const auto* const found = std::ranges::find(
        kMimeTypes, extension, &std::pair<std::string_view, std::string_view>::first);
    return found == kMimeTypes.end() ? "image/png" : found->second;
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            decoded += text[i];
            continue;
        }
        if (i + 2 >= text.size()) return std::string(text);
        const int high = g_ascii_xdigit_value(text[i + 1]);
        const int low = g_ascii_xdigit_value(text[i + 2]);
        if (high < 0 || low < 0) return std::string(text);
        decoded += static_cast<char>(high * 16 + low);
        i += 2;
    }
    const bool isText =
        g_utf8_validate(decoded.data(), static_cast<gssize>(decoded.size()), nullptr) != FALSE;
    return isText ? decoded : std::string(text);
}

std::optional<std::vector<std::uint8_t>> readLocalImage(const std::string& path) {
    if (path.empty() || path.front() != '/' || path.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (file.get() < 0 || fstat(file.get(), &status) != 0) return std::nullopt;
    if (!S_ISREG(status.st_mode) || std::cmp_greater(status.st_size, kSizeLimit)) {
        return std::nullopt;
    }
    if (!isAllowed(file.get())) return std::nullopt;
    return readAll<std::vector<std::uint8_t>>(file.get(), static_cast<std::size_t>(status.st_size));
}

}  // namespace corvel
