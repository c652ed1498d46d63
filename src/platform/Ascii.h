#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace corvel::ascii {

// Runs of plain ASCII are most of the text of most notes; the work on text skips them by words.

constexpr bool isAscii(char byte) {
    return static_cast<unsigned char>(byte) < 0x80;
}

constexpr bool isLetter(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

/// Length of the run of ASCII bytes at the start of `text`.
inline std::size_t runLength(std::string_view text) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;
    std::size_t length = 0;
    for (; text.size() - length >= sizeof(std::uint64_t); length += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + length, sizeof word);
        if ((word & kHighBits) == 0) continue;
        if constexpr (std::endian::native == std::endian::little) {
            return length + static_cast<std::size_t>(std::countr_zero(word & kHighBits)) / 8;
        }
        break;
    }
    while (length < text.size() && isAscii(text[length]))
        ++length;
    return length;
}

inline bool isAll(std::string_view text) {
    return runLength(text) == text.size();
}

}  // namespace corvel::ascii
