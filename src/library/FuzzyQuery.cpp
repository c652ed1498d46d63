#include "library/FuzzyQuery.h"

#include "platform/Text.h"

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

bool isAscii(char letter) {
    return static_cast<unsigned char>(letter) < 0x80;
}

bool isWordLetter(char letter) {
    return !isAscii(letter) || (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9');
}

bool isWordStart(std::string_view folded, std::size_t place) {
    return place == 0 || !isWordLetter(folded[place - 1]);
}

bool isBehindSpace(std::string_view folded, std::size_t place) {
    return place == 0 || folded[place - 1] == ' ';
}

std::size_t nextCharacter(std::string_view text, std::size_t place) {
    do {
        ++place;
    } while (place < text.size() && (static_cast<unsigned char>(text[place]) & 0xC0U) == 0x80U);
    return place;
}

std::size_t placeOf(const std::string& letter, std::string_view folded, std::size_t from) {
    return letter.size() == 1 ? folded.find(letter.front(), from) : folded.find(letter, from);
}

std::string normalized(std::string_view query) {
    std::string folded = text::foldedForSearch(query);
    std::ranges::replace_if(
        folded, [](char letter) { return isAscii(letter) && letter < ' '; }, ' ');
    const std::size_t begin = folded.find_first_not_of(' ');
    if (begin == std::string::npos) return {};
    return folded.substr(begin, folded.find_last_not_of(' ') + 1 - begin);
}

/// A folded title with the characters that its bytes come from.
struct FoldedTitle {
    std::string text;
    std::vector<MatchRange> origins;

    explicit FoldedTitle(std::string_view title) {
        for (std::size_t place = 0; place < title.size();) {
            const std::size_t end = nextCharacter(title, place);
            text::foldForSearch(title.substr(place, end - place), text);
            origins.resize(text.size(), {place, end});
            place = end;
        }
    }
};

std::uint32_t bitOf(char letter) {
    if (letter >= 'a' && letter <= 'z') return 1U << static_cast<unsigned>(letter - 'a');
    return 1U << (26U + static_cast<unsigned char>(letter) % 6U);
}

std::uint32_t bitOf(char first, char second) {
    constexpr std::uint32_t kSpread = 0x9E3779B1;  // by the golden ratio, as hashes do
    const auto pair = static_cast<std::uint32_t>(static_cast<unsigned char>(first)) << 8U |
                      static_cast<unsigned char>(second);
    return 1U << (pair * kSpread >> 27U);
}

}  // namespace

FuzzyQuery::FuzzyQuery(std::string_view query) : m_finder(normalized(query)) {
    const std::string_view folded = m_finder.sought();
    for (std::size_t place = 0; place < folded.size();) {
        const std::size_t end = nextCharacter(folded, place);
        if (folded[place] != ' ') m_letters.emplace_back(folded.substr(place, end - place));
        place = end;
    }
    for (const std::string& letter : m_letters) {
        m_mask |= lettersOf(letter);
    }
    if (m_letters.empty()) return;
    m_head.letters = bitOf(m_letters[0].front());
    const std::size_t second = m_letters[0].size();
    if (second < folded.size()) m_head.pairs = bitOf(folded[0], folded[second]);
    for (std::size_t i = 1; i < std::min<std::size_t>(m_letters.size(), 3); ++i) {
        const char letter = m_letters[i].front();
        m_next.push_back({bitOf(letter), bitOf(m_letters[i - 1].front(), letter)});
    }
}

std::uint32_t FuzzyQuery::lettersOf(std::string_view folded) {
    std::uint32_t letters = 0;
    for (const char letter : folded) {
        letters |= bitOf(letter);
    }
    return letters;
}

WordHeads FuzzyQuery::headsOf(std::string_view folded) {
    WordHeads heads;
    for (std::size_t place = 0; place < folded.size(); ++place) {
        if (!isWordStart(folded, place)) continue;
        heads.letters |= bitOf(folded[place]);
        const std::size_t second = nextCharacter(folded, place);
        if (second < folded.size()) heads.pairs |= bitOf(folded[place], folded[second]);
    }
    return heads;
}

// Each letter begins a word or follows the one before, which began one itself. The third may also
// follow a second that followed the first; what comes behind is not looked at.
bool FuzzyQuery::mayBeginWords(const WordHeads& heads) const {
    if ((m_head.letters & ~heads.letters) != 0) return false;
    bool mayGoOn = false;
    for (const WordHeads& next : m_next) {
        const bool isPair = (next.pairs & heads.pairs) != 0;
        if (!mayGoOn && !isPair && (next.letters & heads.letters) == 0) return false;
        mayGoOn = isPair;
    }
    return true;
}

std::optional<std::size_t> FuzzyQuery::bestPiece(std::string_view folded) const {
    const std::string& sought = m_finder.sought();
    std::optional<std::size_t> first;
    for (auto at = folded.find(sought); at != std::string_view::npos;
         at = folded.find(sought, at + 1)) {
        if (isBehindSpace(folded, at)) return at;
        if (!first) first = at;
    }
    return first;
}

std::optional<MatchRank> FuzzyQuery::rankOfPiece(std::string_view folded) const {
    const auto place = bestPiece(folded);
    if (!place) return std::nullopt;
    if (*place == 0) return MatchRank::start;
    return isBehindSpace(folded, *place) ? MatchRank::wordStart : MatchRank::inside;
}

std::optional<MatchRank> FuzzyQuery::rankOfLetters(std::string_view folded) const {
    if (!scattered(folded, nullptr)) return std::nullopt;
    return atWordStarts(folded, nullptr) ? MatchRank::wordStarts : MatchRank::scattered;
}

std::optional<MatchRank> FuzzyQuery::rank(std::string_view folded) const {
    const auto piece = rankOfPiece(folded);
    return piece ? piece : rankOfLetters(folded);
}

// Each letter goes on where the last one ended, or begins a word.
bool FuzzyQuery::atWordStarts(std::string_view folded, Places* places) const {
    std::size_t end = 0;
    for (const std::string& letter : m_letters) {
        std::size_t at = end;
        const bool goesOn = end > 0 && folded.substr(end).starts_with(letter);
        if (!goesOn) {
            at = placeOf(letter, folded, end);
            while (at != std::string_view::npos && !isWordStart(folded, at)) {
                at = placeOf(letter, folded, at + 1);
            }
            if (at == std::string_view::npos) return false;
        }
        if (places != nullptr) places->push_back(at);
        end = at + letter.size();
    }
    return true;
}

bool FuzzyQuery::scattered(std::string_view folded, Places* places) const {
    std::size_t end = 0;
    for (const std::string& letter : m_letters) {
        const std::size_t at = placeOf(letter, folded, end);
        if (at == std::string_view::npos) return false;
        if (places != nullptr) places->push_back(at);
        end = at + letter.size();
    }
    return true;
}

std::vector<MatchRange> FuzzyQuery::rangesIn(std::string_view title) const {
    const FoldedTitle folded(title);
    Places bytes;
    if (isEmpty()) return {};
    if (const auto piece = bestPiece(folded.text)) {
        for (std::size_t i = 0; i < m_finder.sought().size(); ++i) {
            bytes.push_back(*piece + i);
        }
    } else {
        if (!atWordStarts(folded.text, &bytes)) bytes.clear();
        if (bytes.empty() && !scattered(folded.text, &bytes)) return {};
    }
    std::vector<MatchRange> ranges;
    for (const std::size_t byte : bytes) {
        const MatchRange& origin = folded.origins[byte];
        if (!ranges.empty() && ranges.back().end >= origin.begin) {
            ranges.back().end = std::max(ranges.back().end, origin.end);
        } else {
            ranges.push_back(origin);
        }
    }
    return ranges;
}

}  // namespace corvel
