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

bool contains(std::string_view folded, std::string_view sought) {
    return folded.find(sought) != std::string_view::npos;
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

}  // namespace

FuzzyQuery::FuzzyQuery(std::string_view query) : m_piece(normalized(query)), m_word(' ' + m_piece) {
    for (std::size_t place = 0; place < m_piece.size();) {
        const std::size_t end = nextCharacter(m_piece, place);
        if (m_piece[place] != ' ') m_letters.push_back(m_piece.substr(place, end - place));
        place = end;
    }
}

bool FuzzyQuery::isWordStart(std::string_view folded, std::size_t place) {
    return place == 0 || !isWordLetter(folded[place - 1]);
}

std::optional<std::size_t> FuzzyQuery::bestPiece(std::string_view folded) const {
    std::optional<std::size_t> first;
    for (auto at = folded.find(m_piece); at != std::string_view::npos;
         at = folded.find(m_piece, at + 1)) {
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

std::optional<MatchRank> FuzzyQuery::rank(std::string_view folded) const {
    if (const auto piece = rankOfPiece(folded)) return piece;
    if (!scattered(folded, nullptr)) return std::nullopt;
    return atWordStarts(folded, nullptr) ? MatchRank::wordStarts : MatchRank::scattered;
}

bool FuzzyQuery::isAtLeast(MatchRank rank, std::string_view folded) const {
    switch (rank) {
        case MatchRank::start:
            return folded.starts_with(m_piece);
        case MatchRank::wordStart:
            return contains(folded, m_word);
        case MatchRank::inside:
            return contains(folded, m_piece);
        case MatchRank::wordStarts:
            return atWordStarts(folded, nullptr);
        case MatchRank::scattered:
            return scattered(folded, nullptr);
    }
    return false;
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
        for (std::size_t i = 0; i < m_piece.size(); ++i) {
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
