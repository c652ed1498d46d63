#include "export/epub/XmlText.h"

namespace corvel {

namespace {

// Bytes of the forbidden character at `position`: 0 where the character is allowed.
std::size_t forbiddenLengthAt(std::string_view text, std::size_t position) {
    const auto byte = static_cast<unsigned char>(text[position]);
    if (byte < 0x20) return byte == '\t' || byte == '\n' || byte == '\r' ? 0 : 1;
    if (byte != 0xEF) return 0;
    const auto rest = text.substr(position, 3);
    return rest == "\xEF\xBF\xBE" || rest == "\xEF\xBF\xBF" ? 3 : 0;
}

std::string_view entityOf(char character) {
    switch (character) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&apos;";
        default:
            return {};
    }
}

}  // namespace

std::string withoutForbiddenCharacters(std::string_view text) {
    std::string kept;
    kept.reserve(text.size());
    std::size_t copied = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = forbiddenLengthAt(text, i);
        if (length == 0) {
            ++i;
            continue;
        }
        kept.append(text, copied, i - copied);
        copied = i += length;
    }
    return kept.append(text, copied);
}

std::string xmlEscaped(std::string_view text) {
    std::string escaped;
    for (const char character : withoutForbiddenCharacters(text)) {
        const auto entity = entityOf(character);
        if (entity.empty()) {
            escaped += character;
        } else {
            escaped += entity;
        }
    }
    return escaped;
}

}  // namespace corvel
