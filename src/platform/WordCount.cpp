#include "platform/Ascii.h"
#include "platform/BreakRules.h"
#include "platform/Text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace corvel::text {

namespace {

std::int32_t countedByIcu(std::string_view text) {
    static BreakRules words(icu::BreakIterator::createWordInstance);
    auto& iterator = words.over(text);
    std::int32_t count = 0;
    while (iterator.next() != icu::BreakIterator::DONE) {
        if (iterator.getRuleStatus() >= UBRK_WORD_NONE_LIMIT) ++count;
    }
    return count;
}

// The classes of UAX #29 that plain text consists of. A piece of text with a character of any
// other class (marks, scripts without spaces, flags) is left to ICU.
enum class WordClass : std::uint8_t {
    other,
    letter,
    digit,
    joiner,     // ExtendNumLet: goes with letters and digits
    midLetter,  // between letters
    midNumber,  // between digits
    midBoth,    // between either
    space,      // white space in ASCII: a word never reaches across
    notOrdinary,
};

WordClass classOf(UChar32 character) {
    if (character == ' ' || (character >= '\t' && character <= '\r')) return WordClass::space;
    // Here ICU's rules are not those of UAX #29.
    if (character == ':') return WordClass::other;
    if (character == '@') return WordClass::letter;
    switch (u_getIntPropertyValue(character, UCHAR_WORD_BREAK)) {
        case U_WB_OTHER:
        case U_WB_WSEGSPACE:
        case U_WB_NEWLINE:
        case U_WB_DOUBLE_QUOTE:  // it joins letters of scripts alone that are not ordinary
            return WordClass::other;
        case U_WB_ALETTER:
            return WordClass::letter;
        case U_WB_NUMERIC:
            return WordClass::digit;
        case U_WB_EXTENDNUMLET:
            return WordClass::joiner;
        case U_WB_MIDLETTER:
            return WordClass::midLetter;
        case U_WB_MIDNUM:
            return WordClass::midNumber;
        case U_WB_MIDNUMLET:
        case U_WB_SINGLE_QUOTE:
            return WordClass::midBoth;
        default:
            return WordClass::notOrdinary;
    }
}

// Latin, Greek, Cyrillic, Armenian, and general punctuation.
constexpr UChar32 kLettersEnd = 0x0590;
constexpr UChar32 kPunctuationStart = 0x2000;
constexpr UChar32 kPunctuationEnd = 0x2100;

class WordClasses {
public:
    WordClasses() {
        for (UChar32 c = 0; c < kLettersEnd; ++c)
            m_letters[static_cast<std::size_t>(c)] = classOf(c);
        for (UChar32 c = kPunctuationStart; c < kPunctuationEnd; ++c) {
            m_punctuation[static_cast<std::size_t>(c - kPunctuationStart)] = classOf(c);
        }
    }

    WordClass of(UChar32 c) const {
        if (c < 0) return WordClass::notOrdinary;
        if (c < kLettersEnd) return m_letters[static_cast<std::size_t>(c)];
        if (c >= kPunctuationStart && c < kPunctuationEnd) {
            return m_punctuation[static_cast<std::size_t>(c - kPunctuationStart)];
        }
        return WordClass::notOrdinary;
    }

private:
    std::array<WordClass, kLettersEnd> m_letters{};
    std::array<WordClass, kPunctuationEnd - kPunctuationStart> m_punctuation{};
};

/// Counts the words of a piece of the plainest text: ASCII and the two-byte letters of Latin and
/// Cyrillic. In loops of a fixed length over single bytes and without branches, so that the
/// compiler makes vector code of them; a truth is the byte 1 or 0.
class WordBlock {
public:
    static constexpr std::size_t kSize = 64;

    /// `text` has kSize bytes at least, and no word reaches into it from before.
    explicit WordBlock(std::string_view text) {
        std::memcpy(m_bytes.data() + 1, text.data(), kSize);
        while (m_length > 0 && isSpace(m_bytes[m_length]) == 0)
            --m_length;
    }

    /// Bytes up to the last white space; what follows may go on in the next block.
    std::size_t length() const { return m_length; }

    /// The words within `length`, or -1 when the text is not so plain.
    std::int32_t count() const {
        Byte isStrange = 0;
        Byte count = 0;
        const auto odd = oddBytes();
        const auto words = changesOfCount();
        for (std::size_t i = 0; i < kSize; ++i) {
            const Byte isInside = static_cast<Byte>(i) < static_cast<Byte>(m_length);
            isStrange = byte(isStrange | (odd[i] & isInside));
            count = byte(count + (words[i] & byte(-isInside)));
        }
        return isStrange != 0 ? -1 : count;
    }

private:
    using Byte = std::uint8_t;
    using Bytes = std::array<Byte, kSize>;
    using FramedBytes = std::array<Byte, kSize + 2>;

    static Byte byte(int value) { return static_cast<Byte>(value); }
    static Byte isSpace(Byte b) { return byte((b == ' ') | (byte(b - '\t') < 5)); }
    static Byte isDigit(Byte b) { return byte(b - '0') < 10; }
    // Here '@' counts as one, as it does below.
    static Byte isLetter(Byte b) {
        return byte((byte((b | 0x20) - 'a') < 26) | (b == '@') | (b >= 0x80));
    }
    static Byte isLead(Byte b) {
        return byte((b == 0xC3) | (b == 0xC4) | (b == 0xC5) | (b == 0xD0) | (b == 0xD1));
    }

    template <typename Test>
    FramedBytes marked(Test test) const {
        FramedBytes marks{};
        for (std::size_t i = 0; i < marks.size(); ++i)
            marks[i] = test(m_bytes[i]);
        return marks;
    }

    // 1 where a word begins, -1 for a mark between two letters or two digits, which makes one word
    // of two.
    Bytes changesOfCount() const {
        const FramedBytes letter = marked([](Byte b) { return isLetter(b); });
        const FramedBytes digit = marked([](Byte b) { return isDigit(b); });
        Bytes changes{};
        for (std::size_t i = 0; i < kSize; ++i) {
            const Byte b = m_bytes[i + 1];
            const Byte isStart =
                byte((letter[i + 1] | digit[i + 1]) & ((letter[i] | digit[i]) ^ 1));
            const Byte isMidBoth = byte((b == '.') | (b == '\''));
            const Byte isMidNumber = byte(isMidBoth | (b == ',') | (b == ';'));
            const Byte isJoin = byte((isMidBoth & letter[i] & letter[i + 2]) |
                                     (isMidNumber & digit[i] & digit[i + 2]));
            changes[i] = byte(isStart - isJoin);
        }
        return changes;
    }

    // 1 for anything but ASCII without '_' or such a letter. The signs for times and division stand
    // among those after 0xC3.
    Bytes oddBytes() const {
        Bytes odd{};
        for (std::size_t i = 0; i < kSize; ++i) {
            const Byte before = m_bytes[i];
            const Byte b = m_bytes[i + 1];
            const Byte isTrail = (b & 0xC0) == 0x80;
            const Byte isSign = byte((before == 0xC3) & ((b == 0x97) | (b == 0xB7)));
            const Byte isOtherLead = byte((b >= 0xC0) & (isLead(b) ^ 1));
            odd[i] = byte((isLead(before) ^ isTrail) | isOtherLead | isSign | (b == '_'));
        }
        return odd;
    }

    FramedBytes m_bytes{' '};  ///< the block between two bytes that are no letters
    std::size_t m_length = kSize;
};

/// Counts the words of ordinary text, white space to white space.
class WordScanner {
public:
    explicit WordScanner(std::string_view text) : m_text(text) {}

    std::int32_t count() {
        while (m_text.size() - m_position >= WordBlock::kSize) {
            const WordBlock block(m_text.substr(m_position));
            const std::int32_t words = block.count();
            if (words < 0 || block.length() == 0) {
                countUntil(m_position + WordBlock::kSize);
            } else {
                m_count += words;
                m_position += block.length();
            }
        }
        countUntil(m_text.size());
        return m_count;
    }

private:
    void countUntil(std::size_t end) {
        while (m_position < end) {
            const std::size_t start = m_position;
            const std::int32_t before = m_count;
            if (!scanPiece()) {
                m_position = endOfPiece(m_position);
                m_count = before + countedByIcu(m_text.substr(start, m_position - start));
            }
        }
    }

    // False when the piece has a character that is not ordinary.
    bool scanPiece() {
        WordClass previous = WordClass::other;
        WordClass held = WordClass::other;  // a mark after `previous` that may join what follows
        while (m_position < m_text.size()) {
            const WordClass current = nextClass();
            if (current == WordClass::notOrdinary) return false;
            if (current == WordClass::space) return true;
            if (held != WordClass::other) {
                if (!joins(previous, held, current)) previous = WordClass::other;
                held = WordClass::other;
            }
            if (isMid(current)) {
                held = previous == WordClass::letter || previous == WordClass::digit
                           ? current
                           : WordClass::other;
                if (held == WordClass::other) previous = WordClass::other;
                continue;
            }
            countStart(previous, current);
            previous = current;
            if (current == WordClass::letter) skipLetters();
        }
        return true;
    }

    // Letters after a letter change nothing.
    void skipLetters() {
        while (m_position < m_text.size() && ascii::isLetter(m_text[m_position])) {
            ++m_position;
        }
    }

    void countStart(WordClass previous, WordClass current) {
        if (previous == WordClass::other) m_isCounted = false;
        if (current == WordClass::other) return;
        const bool isWord = current != WordClass::joiner || previous != WordClass::other;
        if (isWord && !m_isCounted) {
            ++m_count;
            m_isCounted = true;
        }
    }

    static bool isMid(WordClass c) {
        return c == WordClass::midLetter || c == WordClass::midNumber || c == WordClass::midBoth;
    }
    static bool joins(WordClass before, WordClass mid, WordClass after) {
        if (before != after) return false;
        return before == WordClass::letter ? mid != WordClass::midNumber
                                           : mid != WordClass::midLetter;
    }

    WordClass nextClass() {
        static const WordClasses classes;
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(m_text.data());
        UChar32 character = 0;
        U8_NEXT(bytes, m_position, m_text.size(), character);
        return classes.of(character);
    }

    std::size_t endOfPiece(std::size_t from) const {
        constexpr std::string_view kSpaces = " \t\n\v\f\r";
        return std::min(m_text.find_first_of(kSpaces, from), m_text.size());
    }

    std::string_view m_text;
    std::size_t m_position = 0;
    std::int32_t m_count = 0;
    bool m_isCounted = false;
};

}  // namespace

std::int32_t wordCount(std::string_view text) {
    return WordScanner(text).count();
}

}  // namespace corvel::text
