#include "markdown/LocalImage.h"

#include "platform/DistantVolumes.h"
#include "platform/FileBytes.h"
#include "platform/ImageType.h"
#include "platform/Paths.h"
#include "platform/RegularFile.h"

#include <glib.h>

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

// Where an open file really is, whatever links led to it.
std::filesystem::path placeOf(int file) {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), error);
}

bool isAllowed(const std::filesystem::path& real) {
    if (real.empty()) return false;
    for (const char* closed : {"/proc", "/sys", "/dev"}) {
        if (liesIn(real, closed)) return false;
    }
    std::error_code error;
    const auto own = std::filesystem::weakly_canonical(paths::applicationSupport(), error);
    return !error && !liesIn(real, own);
}

// `folder` is where the file must lie, empty for anywhere.
std::optional<std::vector<std::uint8_t>> readIn(const std::filesystem::path& folder,
                                                const std::string& path) {
    if (path.empty() || path.front() != '/' || path.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    if (!distantVolumes::answersFor(path)) return std::nullopt;
    const auto opened = openRegularFile(path);
    if (!opened || opened->size > kSizeLimit) return std::nullopt;
    const auto real = placeOf(opened->file.get());
    if (!isAllowed(real)) return std::nullopt;
    std::error_code error;
    if (!folder.empty() && !liesIn(real, std::filesystem::canonical(folder, error)))
        return std::nullopt;
    return readAll<std::vector<std::uint8_t>>(opened->file.get(), opened->size);
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
    return readIn({}, path);
}

std::optional<ImageBeside> readImageBeside(const std::filesystem::path& folder,
                                           std::string_view address) {
    auto bytes = readIn(folder, folder / percentDecoded(address));
    // As in "picture.png?raw=true".
    const auto end = address.find_first_of("?#");
    if (!bytes && end != std::string_view::npos)
        bytes = readIn(folder, folder / percentDecoded(address.substr(0, end)));
    if (!bytes) return std::nullopt;
    const auto type = imageTypeOf({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
    if (type.empty()) return std::nullopt;
    return ImageBeside{type, *std::move(bytes)};
}

}  // namespace corvel
