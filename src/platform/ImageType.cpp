#include "platform/ImageType.h"

#include <algorithm>
#include <array>

namespace corvel {

namespace {

using std::string_view_literals::operator""sv;

struct Signature {
    std::string_view start;
    std::string_view mimeType;
};
constexpr std::array kSignatures{
    Signature{"\x89PNG\r\n\x1a\n"sv, "image/png"},
    Signature{"\xff\xd8\xff"sv, "image/jpeg"},
    Signature{"GIF87a"sv, "image/gif"},
    Signature{"GIF89a"sv, "image/gif"},
    Signature{"BM"sv, "image/bmp"},
    Signature{"\0\0\1\0"sv, "image/x-icon"},
    Signature{"II*\0"sv, "image/tiff"},
    Signature{"MM\0*"sv, "image/tiff"},
};

// A box with its size, "ftyp", and the brand.
std::optional<std::string_view> typeOfBoxed(std::string_view bytes) {
    if (bytes.size() < 12 || bytes.substr(4, 4) != "ftyp") return std::nullopt;
    const std::string_view brand = bytes.substr(8, 4);
    if (brand == "avif" || brand == "avis") return "image/avif";
    if (brand == "heic" || brand == "heix" || brand == "mif1") return "image/heic";
    return std::nullopt;
}

std::string_view withoutSpaces(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    return text;
}

bool skipPast(std::string_view& text, std::string_view begin, std::string_view end) {
    if (!text.starts_with(begin)) return false;
    const std::size_t found = text.find(end, begin.size());
    if (found == std::string_view::npos) return false;
    text = withoutSpaces(text.substr(found + end.size()));
    return true;
}

// The root element behind declaration, comments and document type.
bool isSvg(std::string_view text) {
    if (text.starts_with("\xef\xbb\xbf")) text.remove_prefix(3);
    text = withoutSpaces(text);
    while (skipPast(text, "<?", "?>") || skipPast(text, "<!--", "-->") ||
           skipPast(text, "<!DOCTYPE", ">")) {
    }
    constexpr std::string_view kRoot = "<svg";
    return text.starts_with(kRoot) && text.size() > kRoot.size() &&
           std::string_view(" \t\r\n>/").find(text[kRoot.size()]) != std::string_view::npos;
}

}  // namespace

std::optional<std::string_view> imageTypeOf(std::string_view bytes) {
    for (const auto& signature : kSignatures) {
        if (bytes.starts_with(signature.start)) return signature.mimeType;
    }
    if (bytes.size() >= 12 && bytes.starts_with("RIFF") && bytes.substr(8, 4) == "WEBP") {
        return "image/webp";
    }
    if (const auto type = typeOfBoxed(bytes)) return type;
    if (isSvg(bytes)) return "image/svg+xml";
    return std::nullopt;
}

}  // namespace corvel
