#include "markdown/HeadingSlug.h"

#include "markdown/PatternSpace.h"
#include "platform/Text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <array>
#include <cstdint>

namespace corvel {

namespace {

constexpr std::uint32_t kLettersAndNumbers = U_GC_L_MASK | U_GC_N_MASK;

bool isKept(UChar32 character) {
    if (character < 0) return false;
    return character == '-' || (U_MASK(u_charType(character)) & kLettersAndNumbers) != 0;
}

std::string foldedByIcu(std::string_view text) {
    return text::withoutDiacritics(text::lowercased(text));
}

// Below U+0180 (Latin with its marks composed) each character folds by itself, whatever stands
// beside it; looking them up is many times as fast as two runs of ICU for every heading.
constexpr std::size_t kTableSize = 0x180;

const std::array<std::string, kTableSize>& foldedCharacters() {
    static const std::array<std::string, kTableSize> table = [] {
        std::array<std::string, kTableSize> folded;
        for (std::size_t i = 0; i < kTableSize; ++i) {
            const std::string character = i < 0x80
                                              ? std::string(1, static_cast<char>(i))
                                              : std::string{static_cast<char>(0xC0 | (i >> 6U)),
                                                            static_cast<char>(0x80 | (i & 0x3FU))};
            folded[i] = foldedByIcu(character);
        }
        return folded;
    }();
    return table;
}

std::string folded(std::string_view plainText) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(plainText.data());
    const auto& table = foldedCharacters();
    std::string result;
    for (std::size_t position = 0; position < plainText.size();) {
        const std::size_t begin = position;
        UChar32 character = 0;
        U8_NEXT(bytes, position, plainText.size(), character);
        const bool isPunctuation = character >= 0x2010 && character <= 0x2027;
        if (isPunctuation) {
            result.append(plainText, begin, position - begin);
        } else if (character >= 0 && static_cast<std::size_t>(character) < kTableSize) {
            result += table[static_cast<std::size_t>(character)];
        } else {
            return foldedByIcu(plainText);
        }
    }
    return result;
}

std::string trimmedOfHyphens(std::string text) {
    text.erase(text.find_last_not_of('-') + 1);
    text.erase(0, text.find_first_not_of('-'));
    return text;
}

}  // namespace

std::string headingSlug(std::string_view plainText) {
    const std::string text = folded(plainText);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::string slug;
    slug.reserve(text.size());
    bool afterSpace = false;
    for (std::size_t position = 0; position < text.size();) {
        if (const std::size_t length = spaceLengthAt(text, position)) {
            position += length;
            // What is removed between two spaces joins them to one run.
            if (!afterSpace) slug += '-';
            afterSpace = true;
            continue;
        }
        const std::size_t begin = position;
        UChar32 character = 0;
        U8_NEXT(bytes, position, text.size(), character);
        if (!isKept(character)) continue;
        slug.append(text, begin, position - begin);
        afterSpace = false;
    }
    return trimmedOfHyphens(std::move(slug));
}

}  // namespace corvel
