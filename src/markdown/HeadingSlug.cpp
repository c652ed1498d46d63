#include "markdown/HeadingSlug.h"

#include "markdown/PatternSpace.h"
#include "platform/Text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace corvel {

namespace {

constexpr std::uint32_t kLettersAndNumbers = U_GC_L_MASK | U_GC_N_MASK;

bool isKept(UChar32 character) {
    if (character < 0) return false;
    return character == '-' || (U_MASK(u_charType(character)) & kLettersAndNumbers) != 0;
}

std::string trimmedOfHyphens(std::string text) {
    text.erase(text.find_last_not_of('-') + 1);
    text.erase(0, text.find_first_not_of('-'));
    return text;
}

}  // namespace

std::string headingSlug(std::string_view plainText) {
    const std::string folded = text::withoutDiacritics(text::lowercased(plainText));
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(folded.data());
    std::string slug;
    slug.reserve(folded.size());
    bool afterSpace = false;
    for (std::size_t position = 0; position < folded.size();) {
        if (const std::size_t length = spaceLengthAt(folded, position)) {
            position += length;
            // What is removed between two spaces joins them to one run.
            if (!afterSpace) slug += '-';
            afterSpace = true;
            continue;
        }
        const std::size_t begin = position;
        UChar32 character = 0;
        U8_NEXT(bytes, position, folded.size(), character);
        if (!isKept(character)) continue;
        slug.append(folded, begin, position - begin);
        afterSpace = false;
    }
    return trimmedOfHyphens(std::move(slug));
}

}  // namespace corvel
