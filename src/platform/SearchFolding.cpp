#include "platform/SearchFolding.h"

#include "platform/Ascii.h"
#include "platform/Text.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstring>

namespace corvel::text {

namespace {

struct Stroked {
    char16_t letter;
    char base;
};
// Small letters with a stroke have no decomposition; people type the base letter for them.
constexpr std::array kStroked{
    Stroked{0x00F8, 'o'}, Stroked{0x0111, 'd'}, Stroked{0x0127, 'h'}, Stroked{0x0142, 'l'},
    Stroked{0x0167, 't'}, Stroked{0x0180, 'b'}, Stroked{0x01B6, 'z'}, Stroked{0x01E5, 'g'},
    Stroked{0x023C, 'c'}, Stroked{0x0247, 'e'}, Stroked{0x0249, 'j'}, Stroked{0x024D, 'r'},
    Stroked{0x024F, 'y'}, Stroked{0x0268, 'i'}, Stroked{0x1D7D, 'p'}, Stroked{0x2C65, 'a'},
    Stroked{0x2C66, 't'}, Stroked{0xA741, 'k'}, Stroked{0xA743, 'k'}, Stroked{0xA745, 'k'},
    Stroked{0xA749, 'l'}, Stroked{0xA74B, 'o'}, Stroked{0xA751, 'p'}, Stroked{0xA757, 'q'},
    Stroked{0xA759, 'q'}, Stroked{0xA75F, 'v'}, Stroked{0xA799, 'f'}, Stroked{0xA7A1, 'g'},
    Stroked{0xA7A3, 'k'}, Stroked{0xA7A5, 'n'}, Stroked{0xA7A7, 'r'}, Stroked{0xA7A9, 's'},
    Stroked{0xA7B9, 'u'}, Stroked{0xA7C8, 'd'}, Stroked{0xA7CA, 's'},
};

UChar32 baseOf(UChar32 letter) {
    const auto* found = std::lower_bound(
        kStroked.begin(), kStroked.end(), letter,
        [](const Stroked& entry, UChar32 wanted) { return entry.letter < wanted; });
    return found != kStroked.end() && found->letter == letter ? found->base : letter;
}

// A few spacing marks change places under normalisation; they go with the others, so that the
// form of a text is that of its code points in order.
bool isMark(UChar32 character) {
    return u_charType(character) == U_NON_SPACING_MARK || u_getCombiningClass(character) != 0;
}

icu::UnicodeString withoutMarks(const icu::UnicodeString& text) {
    icu::UnicodeString bare;
    for (std::int32_t i = 0; i < text.length();) {
        const UChar32 character = text.char32At(i);
        i += U16_LENGTH(character);
        if (!isMark(character)) bare.append(character);
    }
    return bare;
}

void appendForm(UChar32 character, std::string& bytes) {
    if (U_IS_SURROGATE(character)) return;  // never met: UTF-8 has none
    UErrorCode status = U_ZERO_ERROR;
    const auto* normalizer = icu::Normalizer2::getNFDInstance(status);
    auto form = withoutMarks(normalizer->normalize(icu::UnicodeString(character), status));
    form.foldCase();
    icu::UnicodeString based;
    for (std::int32_t i = 0; i < form.length();) {
        const UChar32 letter = form.char32At(i);
        i += U16_LENGTH(letter);
        based.append(baseOf(letter));
    }
    based.toUTF8String(bytes);
}

// Writes the lower case of the block; of use up to its first byte that is not ASCII. Without
// branches, so that the compiler makes vector code of it.
constexpr std::size_t kBlock = 32;
void foldAsciiBlock(const char* from, char* to) {
    for (std::size_t i = 0; i < kBlock; ++i) {
        const auto byte = static_cast<unsigned char>(from[i]);
        const bool isUpper = static_cast<unsigned char>(byte - 'A') < 26;
        to[i] = static_cast<char>(byte | (isUpper ? 0x20 : 0));
    }
}

char foldedAscii(char byte) {
    return static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte | 0x20 : byte);
}

/// Room at the end of a string: always at least as many bytes as are still to be read.
class Output {
public:
    Output(std::string& text, std::size_t size) : m_text(text), m_used(text.size()) {
        m_text.resize(m_used + size + kBlock);
    }
    ~Output() { m_text.resize(m_used); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    char* end() { return m_text.data() + m_used; }
    void advance(std::size_t size) { m_used += size; }

    void append(std::string_view form, std::size_t stillToRead) {
        if (m_text.size() - m_used < form.size() + stillToRead + kBlock) {
            m_text.resize(m_text.size() + m_text.size() / 2 + form.size() + stillToRead + kBlock);
        }
        std::memcpy(end(), form.data(), form.size());
        m_used += form.size();
    }

private:
    std::string& m_text;
    std::size_t m_used;
};

}  // namespace

SearchFolding& SearchFolding::shared() {
    static SearchFolding folding;
    return folding;
}

std::unique_ptr<SearchFolding::Page> SearchFolding::makePage(std::uint32_t number) {
    auto page = std::make_unique<Page>();
    for (std::uint32_t i = 0; i < kPageSize; ++i) {
        appendForm(static_cast<UChar32>(number * kPageSize + i), page->bytes);
        page->ends[i + 1] = static_cast<std::uint16_t>(page->bytes.size());
        page->shortForms[i] = shortened(page->of(i));
    }
    return page;
}

SearchFolding::ShortForm SearchFolding::shortened(std::string_view form) {
    ShortForm result;
    if (form.size() > result.bytes.size()) {
        result.size = ShortForm::kLong;
    } else {
        std::copy(form.begin(), form.end(), result.bytes.begin());
        result.size = static_cast<std::uint8_t>(form.size());
    }
    return result;
}

namespace {

/// Folds one text from its start to its end.
class Folding {
public:
    Folding(std::string_view text, std::string& folded)
        : m_text(text), m_output(folded, text.size()) {}

    void run() {
        while (m_position < m_text.size()) {
            skipAscii();
            while (m_position < m_text.size() && !ascii::isAscii(m_text[m_position]))
                takeOne();
        }
    }

private:
    void skipAscii() {
        while (m_text.size() - m_position >= kBlock) {
            const auto block = m_text.substr(m_position, kBlock);
            foldAsciiBlock(block.data(), m_output.end());
            const std::size_t length = ascii::runLength(block);
            m_position += length;
            m_output.advance(length);
            if (length < kBlock) return;
        }
        for (; m_position < m_text.size() && ascii::isAscii(m_text[m_position]); ++m_position) {
            *m_output.end() = foldedAscii(m_text[m_position]);
            m_output.advance(1);
        }
    }

    void takeOne() {
        if (takeTwoBytes()) return;
        UChar32 character = 0;
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(m_text.data());
        U8_NEXT_OR_FFFD(bytes, m_position, m_text.size(), character);
        m_output.append(m_folding.of(character), m_text.size() - m_position);
    }

    // Most letters that are not ASCII. What grows by folding is left.
    bool takeTwoBytes() {
        if (m_text.size() - m_position < 2) return false;
        const auto first = static_cast<unsigned char>(m_text[m_position]);
        const auto second = static_cast<unsigned char>(m_text[m_position + 1]);
        if (first < 0xC2 || first > 0xDF || (second & 0xC0U) != 0x80U) return false;
        const auto& form = m_folding.shortOf((first & 0x1FU) << 6U | (second & 0x3FU));
        if (form.size == SearchFolding::ShortForm::kLong) return false;
        std::memcpy(m_output.end(), form.bytes.data(), form.bytes.size());
        m_output.advance(form.size);
        m_position += 2;
        return true;
    }

    SearchFolding& m_folding = SearchFolding::shared();
    std::string_view m_text;
    Output m_output;
    std::size_t m_position = 0;
};

}  // namespace

void foldForSearch(std::string_view text, std::string& folded) {
    Folding(text, folded).run();
}

std::string foldedForSearch(std::string_view text) {
    std::string folded;
    foldForSearch(text, folded);
    return folded;
}

}  // namespace corvel::text
