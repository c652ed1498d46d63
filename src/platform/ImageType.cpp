#include "platform/ImageType.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvel {

namespace {

using namespace std::string_view_literals;

struct Signature {
    std::size_t offset;
    std::string_view bytes;
    std::string_view type;
};
constexpr std::array kSignatures{
    Signature{0, "\x89PNG\r\n\x1A\n"sv, "image/png"},
    Signature{0, "\xFF\xD8\xFF"sv, "image/jpeg"},
    Signature{0, "GIF87a"sv, "image/gif"},
    Signature{0, "GIF89a"sv, "image/gif"},
    Signature{8, "WEBP"sv, "image/webp"},
    Signature{4, "ftypavif"sv, "image/avif"},
    Signature{4, "ftypavis"sv, "image/avif"},
    Signature{4, "ftypheic"sv, "image/heic"},
    Signature{4, "ftypheix"sv, "image/heic"},
    Signature{4, "ftypmif1"sv, "image/heic"},
    Signature{0, "II*\0"sv, "image/tiff"},
    Signature{0, "MM\0*"sv, "image/tiff"},
    Signature{0, "\0\0\1\0"sv, "image/x-icon"},
};

// "BM", a size, four zero bytes: two letters alone would take many a text.
bool isBitmap(std::string_view bytes) {
    return bytes.size() > 26 && bytes.starts_with("BM") && bytes.substr(6, 4) == "\0\0\0\0"sv;
}

// A drawing is text: its root element stands behind declarations and comments.
bool isDrawing(std::string_view bytes) {
    constexpr std::size_t kFarEnough = 4096;
    std::string_view text = bytes.substr(0, kFarEnough);
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    while (!text.empty()) {
        const std::size_t start = text.find_first_not_of(" \t\r\n");
        if (start == std::string_view::npos) return false;
        text.remove_prefix(start);
        if (text.starts_with("<svg") && text.size() > 4)
            return " \t\r\n>/"sv.find(text[4]) != std::string_view::npos;
        const bool isComment = text.starts_with("<!--");
        if (!isComment && !text.starts_with("<?") && !text.starts_with("<!DOCTYPE svg"))
            return false;
        const std::string_view closing = isComment ? "-->" : ">";
        const std::size_t end = text.find(closing);
        if (end == std::string_view::npos) return false;
        text.remove_prefix(end + closing.size());
    }
    return false;
}

}  // namespace

std::string_view imageTypeOf(std::string_view bytes) {
    for (const Signature& signature : kSignatures) {
        const bool isLong = bytes.size() > signature.offset + signature.bytes.size();
        if (isLong && bytes.substr(signature.offset).starts_with(signature.bytes)) {
            if (signature.type == "image/webp" && !bytes.starts_with("RIFF")) continue;
            return signature.type;
        }
    }
    if (isBitmap(bytes)) return "image/bmp";
    return isDrawing(bytes) ? "image/svg+xml" : "";
}

std::string_view imageExtension(std::string_view mimeType) {
    if (mimeType == "image/svg+xml") return ".svg";
    if (mimeType == "image/jpeg") return ".jpg";
    static constexpr std::array kPlain{
        std::pair{"image/png"sv, ".png"sv},   std::pair{"image/gif"sv, ".gif"sv},
        std::pair{"image/webp"sv, ".webp"sv}, std::pair{"image/avif"sv, ".avif"sv},
        std::pair{"image/heic"sv, ".heic"sv}, std::pair{"image/tiff"sv, ".tiff"sv},
        std::pair{"image/bmp"sv, ".bmp"sv}};
    const auto* const found =
        std::ranges::find(kPlain, mimeType, &decltype(kPlain)::value_type::first);
    return found == kPlain.end() ? "" : found->second;
}

}  // namespace corvel
