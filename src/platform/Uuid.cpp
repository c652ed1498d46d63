#include "platform/Uuid.h"

#include <sys/random.h>

#include <stdexcept>

namespace corvel {

namespace {

constexpr std::size_t kTextLength = 36;

constexpr bool isHyphenAt(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

int hexDigit(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
}

}  // namespace

Uuid Uuid::random() {
    Uuid id;
    if (getrandom(id.bytes.data(), id.bytes.size(), 0) != static_cast<ssize_t>(id.bytes.size())) {
        throw std::runtime_error("the system's random source gave nothing");
    }
    id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0F) | 0x40);
    id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3F) | 0x80);
    return id;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != kTextLength) return std::nullopt;
    Uuid id;
    std::size_t digits = 0;
    for (std::size_t i = 0; i < kTextLength; ++i) {
        if (isHyphenAt(i)) {
            if (text[i] != '-') return std::nullopt;
            continue;
        }
        const int value = hexDigit(text[i]);
        if (value < 0) return std::nullopt;
        auto& byte = id.bytes[digits / 2];
        byte = static_cast<std::uint8_t>((byte << 4) | value);
        ++digits;
    }
    return id;
}

std::string Uuid::toString() const {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    text.reserve(kTextLength);
    for (const std::uint8_t byte : bytes) {
        if (isHyphenAt(text.size())) text.push_back('-');
        text.push_back(kDigits[byte >> 4]);
        text.push_back(kDigits[byte & 0x0F]);
    }
    return text;
}

}  // namespace corvel
