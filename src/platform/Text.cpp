#include "platform/Text.h"

#include "platform/Ascii.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/coll.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>

namespace corvel::text {

namespace {

constexpr std::string_view kReplacement = "\uFFFD";
constexpr std::string_view kSymbolForNull = "\u2400";

// U+FFFD for an invalid sequence; `position` moves past it.
UChar32 nextOf(std::string_view text, std::size_t& position) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    UChar32 character = 0;
    U8_NEXT(bytes, position, text.size(), character);
    return character;
}

icu::StringPiece pieceOf(std::string_view text) {
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

void appendUtf8(char16_t unit, std::string& text) {
    std::array<char, U8_MAX_LENGTH> bytes{};
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes.data(), length, unit);
    text.append(bytes.data(), length);
}

// 0x80 to 0xFF of Windows-1250; zero where it has no character.
constexpr std::array<char16_t, 128> kWindows1250 = {
    0x20AC, 0x0000, 0x201A, 0x0000, 0x201E, 0x2026, 0x2020, 0x2021, 0x0000, 0x2030, 0x0160, 0x2039,
    0x015A, 0x0164, 0x017D, 0x0179, 0x0000, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x0000, 0x2122, 0x0161, 0x203A, 0x015B, 0x0165, 0x017E, 0x017A, 0x00A0, 0x02C7, 0x02D8, 0x0141,
    0x00A4, 0x0104, 0x00A6, 0x00A7, 0x00A8, 0x00A9, 0x015E, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x017B,
    0x00B0, 0x00B1, 0x02DB, 0x0142, 0x00B4, 0x00B5, 0x00B6, 0x00B7, 0x00B8, 0x0105, 0x015F, 0x00BB,
    0x013D, 0x02DD, 0x013E, 0x017C, 0x0154, 0x00C1, 0x00C2, 0x0102, 0x00C4, 0x0139, 0x0106, 0x00C7,
    0x010C, 0x00C9, 0x0118, 0x00CB, 0x011A, 0x00CD, 0x00CE, 0x010E, 0x0110, 0x0143, 0x0147, 0x00D3,
    0x00D4, 0x0150, 0x00D6, 0x00D7, 0x0158, 0x016E, 0x00DA, 0x0170, 0x00DC, 0x00DD, 0x0162, 0x00DF,
    0x0155, 0x00E1, 0x00E2, 0x0103, 0x00E4, 0x013A, 0x0107, 0x00E7, 0x010D, 0x00E9, 0x0119, 0x00EB,
    0x011B, 0x00ED, 0x00EE, 0x010F, 0x0111, 0x0144, 0x0148, 0x00F3, 0x00F4, 0x0151, 0x00F6, 0x00F7,
    0x0159, 0x016F, 0x00FA, 0x0171, 0x00FC, 0x00FD, 0x0163, 0x02D9,
};

using CollatorPointer = std::unique_ptr<icu::Collator>;

const icu::Collator* collatorFor(const std::string& language) {
    static std::map<std::string, CollatorPointer> collators;
    auto& collator = collators[language];
    if (!collator) {
        UErrorCode status = U_ZERO_ERROR;
        collator.reset(icu::Collator::createInstance(icu::Locale(language.c_str()), status));
        if (U_FAILURE(status) != 0) collator.reset();
    }
    return collator.get();
}

}  // namespace

bool isValidUtf8(std::string_view text) {
    std::size_t position = 0;
    while (true) {
        position += ascii::runLength(text.substr(position));
        if (position == text.size()) return true;
        if (nextOf(text, position) < 0) return false;
    }
}

std::string repaired(std::string_view text) {
    if (isValidUtf8(text) && text.find('\0') == text.npos) return std::string(text);
    std::string result;
    result.reserve(text.size() + 64);
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t start = position;
        const UChar32 character = nextOf(text, position);
        if (character > 0) {
            result += text.substr(start, position - start);
        } else {
            result += character == 0 ? kSymbolForNull : kReplacement;
        }
    }
    return result;
}

std::string lowercased(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    if (ascii::isAll(text)) {
        for (const char byte : text) {
            result.push_back(byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte);
        }
        return result;
    }
    UErrorCode status = U_ZERO_ERROR;
    icu::StringByteSink<std::string> sink(&result);
    icu::CaseMap::utf8ToLower("", 0, pieceOf(text), sink, nullptr, status);
    return result;
}

std::string withoutDiacritics(std::string_view text) {
    if (ascii::isAll(text)) return std::string(text);
    UErrorCode status = U_ZERO_ERROR;
    const auto source = icu::UnicodeString::fromUTF8(pieceOf(text));
    const auto decomposed = icu::Normalizer2::getNFDInstance(status)->normalize(source, status);
    icu::UnicodeString bare;
    for (std::int32_t i = 0; i < decomposed.length();) {
        const UChar32 character = decomposed.char32At(i);
        i += U16_LENGTH(character);
        if (u_charType(character) != U_NON_SPACING_MARK) bare.append(character);
    }
    std::string result;
    icu::Normalizer2::getNFCInstance(status)->normalize(bare, status).toUTF8String(result);
    return result;
}

std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

std::string_view prefixByBytes(std::string_view text, std::size_t size) {
    if (text.size() <= size) return text;
    const auto isTrail = [&](std::size_t position) {
        return U8_IS_TRAIL(static_cast<std::uint8_t>(text[position]));
    };
    // Four bytes make the longest character; beyond them the text is not UTF-8 anyway.
    std::size_t end = size;
    while (end > 0 && size - end < 3 && isTrail(end))
        --end;
    return text.substr(0, end);
}

int collate(std::string_view a, std::string_view b, const char* language) {
    const icu::Collator* collator = collatorFor(language);
    if (collator == nullptr) return a.compare(b);
    UErrorCode status = U_ZERO_ERROR;
    return collator->compareUTF8(pieceOf(a), pieceOf(b), status);
}

std::optional<std::string> fromWindows1250(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const char byte : bytes) {
        if (ascii::isAscii(byte)) {
            text.push_back(byte);
            continue;
        }
        const char16_t character = kWindows1250[static_cast<unsigned char>(byte) - 0x80U];
        if (character == 0) return std::nullopt;
        appendUtf8(character, text);
    }
    return text;
}

}  // namespace corvel::text
