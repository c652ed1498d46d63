#include "markdown/HeadingSlug.h"

#include "markdown/PatternSpace.h"
#include "platform/Text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <array>
#include <cstdint>
#include <utility>

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

/// Writes the slug piece by piece: what is kept of a heading, and a hyphen for each run of spaces.
class SlugWriter {
public:
    explicit SlugWriter(std::size_t size) { m_slug.reserve(size); }

    // What is removed between two spaces joins them to one run.
    void space() {
        if (!m_isAfterSpace) m_slug += '-';
        m_isAfterSpace = true;
    }
    void keep(std::string_view text) {
        m_slug += text;
        m_isAfterSpace = false;
    }
    std::string take() { return std::move(m_slug); }

private:
    std::string m_slug;
    bool m_isAfterSpace = false;
};

void writeFolded(SlugWriter& slug, std::string_view text) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    for (std::size_t position = 0; position < text.size();) {
        if (const std::size_t length = spaceLengthAt(text, position)) {
            position += length;
            slug.space();
            continue;
        }
        const std::size_t begin = position;
        UChar32 character = 0;
        U8_NEXT(bytes, position, text.size(), character);
        if (isKept(character)) slug.keep(text.substr(begin, position - begin));
    }
}

// Below U+0180 (Latin with its marks composed) each character folds by itself, whatever stands
// beside it; looking it up is many times as fast as two runs of ICU for every heading.
constexpr std::size_t kTableSize = 0x180;

struct Folded {
    std::string kept;
    bool isSpace = false;
};

std::array<Folded, kTableSize> makeTable() {
    std::array<Folded, kTableSize> table;
    for (std::size_t i = 0; i < kTableSize; ++i) {
        const std::string character = i < 0x80 ? std::string(1, static_cast<char>(i))
                                               : std::string{static_cast<char>(0xC0 | (i >> 6U)),
                                                             static_cast<char>(0x80 | (i & 0x3FU))};
        const auto folded = foldedByIcu(character);
        table[i].isSpace = spaceLengthAt(folded, 0) != 0;
        if (table[i].isSpace) continue;
        SlugWriter slug(folded.size());
        writeFolded(slug, folded);
        table[i].kept = slug.take();
    }
    return table;
}

/// False when the text has a character that the table does not know.
bool writeByTable(SlugWriter& slug, std::string_view plainText) {
    static const auto table = makeTable();
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(plainText.data());
    for (std::size_t position = 0; position < plainText.size();) {
        UChar32 character = 0;
        U8_NEXT(bytes, position, plainText.size(), character);
        const bool isPunctuation = character >= 0x2010 && character <= 0x2027;
        if (isPunctuation) continue;
        if (character < 0 || static_cast<std::size_t>(character) >= kTableSize) return false;
        const Folded& folded = table[static_cast<std::size_t>(character)];
        if (folded.isSpace) {
            slug.space();
        } else if (!folded.kept.empty()) {
            slug.keep(folded.kept);
        }
    }
    return true;
}

std::string trimmedOfHyphens(std::string text) {
    text.erase(text.find_last_not_of('-') + 1);
    text.erase(0, text.find_first_not_of('-'));
    return text;
}

}  // namespace

std::string headingSlug(std::string_view plainText) {
    SlugWriter byTable(plainText.size());
    if (writeByTable(byTable, plainText)) return trimmedOfHyphens(byTable.take());
    SlugWriter slug(plainText.size());
    writeFolded(slug, foldedByIcu(plainText));
    return trimmedOfHyphens(slug.take());
}

}  // namespace corvel
