#include "app/editing/TextDifference.h"

#include "app/editing/SequenceMatch.h"
#include "app/editing/TextEdit.h"
#include "platform/Ascii.h"
#include "platform/Text.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace corvel::editing {

namespace {

using Kind = DifferenceRun::Kind;

// Comparisons of one call: some tens of milliseconds.
constexpr std::size_t kBudget = 2'000'000;
// Bytes of changed lines that are looked at word by word: all together, and of one change.
constexpr std::size_t kMostByWords = 400'000;
constexpr std::size_t kLongestByWords = 100'000;
// What has less than this in common was written anew: showing the same little words would confuse.
constexpr double kLeastInCommon = 0.3;

/// The pieces of two texts as numbers: equal pieces have equal ones.
class Pieces {
public:
    struct Side {
        std::vector<std::uint32_t> elements;
        std::vector<std::size_t> ends;

        std::size_t start(std::size_t piece) const { return piece == 0 ? 0 : ends[piece - 1]; }
    };

    void add(Side& side, std::string_view text, std::vector<std::size_t> ends) {
        side.ends = std::move(ends);
        side.elements.reserve(side.ends.size());
        std::size_t start = 0;
        for (const auto end : side.ends) {
            const auto number = static_cast<std::uint32_t>(m_numbers.size());
            const auto piece = text.substr(start, end - start);
            side.elements.push_back(m_numbers.try_emplace(piece, number).first->second);
            start = end;
        }
    }

private:
    std::unordered_map<std::string_view, std::uint32_t> m_numbers;
};

std::vector<std::size_t> lineEnds(std::string_view text) {
    std::vector<std::size_t> ends;
    for (std::size_t at = text.find('\n'); at != text.npos; at = text.find('\n', at + 1))
        ends.push_back(at + 1);
    if (!text.empty() && (ends.empty() || ends.back() != text.size())) ends.push_back(text.size());
    return ends;
}

bool hasWord(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char byte) {
        return static_cast<unsigned char>(byte) >= 0x80 || ascii::isLetter(byte) ||
               (byte >= '0' && byte <= '9');
    });
}

class Comparison {
public:
    Comparison(std::string_view before, std::string_view after)
        : m_before(before), m_after(after) {}

    std::vector<DifferenceRun> runs() {
        const auto whole = stretches({0, m_before.size()}, {0, m_after.size()}, lineEnds);
        const auto changed = [this](TextRange before, TextRange after) {
            changedLines(before, after);
        };
        walk(whole, {0, m_before.size()}, {0, m_after.size()}, changed);
        return std::move(m_runs);
    }

private:
    // Stretches of equal bytes in the two texts, by pieces of them.
    template <typename Ends>
    std::vector<MatchedStretch> stretches(TextRange before, TextRange after, Ends endsOf) {
        Pieces pieces;
        Pieces::Side old;
        Pieces::Side present;
        pieces.add(old, slice(m_before, before), endsOf(slice(m_before, before)));
        pieces.add(present, slice(m_after, after), endsOf(slice(m_after, after)));
        auto found = matchedStretches(old.elements, present.elements, m_budget);
        for (auto& stretch : found) {
            const std::size_t start = old.start(stretch.before);
            const std::size_t size = old.ends[stretch.before + stretch.count - 1] - start;
            stretch = {before.begin + start, after.begin + present.start(stretch.after), size};
        }
        return found;
    }

    template <typename Changed>
    void walk(const std::vector<MatchedStretch>& kept,
              TextRange before,
              TextRange after,
              Changed changed) {
        for (const auto& stretch : kept) {
            changed({before.begin, stretch.before}, {after.begin, stretch.after});
            before.begin = stretch.before + stretch.count;
            after.begin = stretch.after + stretch.count;
            add(Kind::kept, {stretch.before, before.begin}, {stretch.after, after.begin});
        }
        changed(before, after);
    }

    void changedLines(TextRange before, TextRange after) {
        const auto exchange = [this](TextRange old, TextRange present) { exchanged(old, present); };
        if (before.begin == before.end || after.begin == after.end) return exchange(before, after);
        walk(keptWords(before, after), before, after, exchange);
    }

    std::vector<MatchedStretch> keptWords(TextRange before, TextRange after) {
        const std::size_t size = before.end - before.begin + after.end - after.begin;
        if (size > kLongestByWords || size > m_byWords) return keptEnds(before, after);
        m_byWords -= size;
        auto kept = stretches(before, after, text::wordBreaks);
        joinChanges(kept, before, after);
        std::size_t common = 0;
        for (const auto& stretch : kept)
            common += stretch.count;
        if (static_cast<double>(2 * common) < kLeastInCommon * static_cast<double>(size)) return {};
        return kept;
    }

    // A space or a comma between two changes is no rest for the eye.
    void joinChanges(std::vector<MatchedStretch>& kept, TextRange before, TextRange after) const {
        const auto isBetween = [&](const MatchedStretch& stretch) {
            const bool isFirst = stretch.before == before.begin && stretch.after == after.begin;
            const bool isLast = stretch.before + stretch.count == before.end &&
                                stretch.after + stretch.count == after.end;
            const auto text = m_before.substr(stretch.before, stretch.count);
            return !isFirst && !isLast && !hasWord(text) && text.find('\n') == text.npos;
        };
        std::erase_if(kept, isBetween);
    }

    // Of texts too long to be compared by words: what they begin and end with.
    std::vector<MatchedStretch> keptEnds(TextRange before, TextRange after) const {
        const auto old = slice(m_before, before);
        const auto present = slice(m_after, after);
        const auto differs = std::mismatch(old.begin(), old.end(), present.begin(), present.end());
        const auto begun = static_cast<std::size_t>(differs.first - old.begin());
        const auto blank = old.substr(0, begun).find_last_of(kBlanks);
        const std::size_t start = blank == old.npos ? 0 : blank + 1;
        const auto last =
            std::mismatch(old.rbegin(), old.rend() - static_cast<std::ptrdiff_t>(start),
                          present.rbegin(), present.rend() - static_cast<std::ptrdiff_t>(start));
        const auto ended = static_cast<std::size_t>(last.first - old.rbegin());
        const auto tail = old.substr(old.size() - ended);
        const auto from = tail.find_first_of(kBlanks);
        const std::size_t end = from == tail.npos ? 0 : tail.size() - from;
        std::vector<MatchedStretch> kept;
        if (start > 0) kept.push_back({before.begin, after.begin, start});
        if (end > 0) kept.push_back({before.end - end, after.end - end, end});
        return kept;
    }

    void exchanged(TextRange before, TextRange after) {
        add(Kind::removed, before, {after.begin, after.begin});
        add(Kind::added, {before.end, before.end}, after);
    }

    void add(Kind kind, TextRange before, TextRange after) {
        if (before.begin == before.end && after.begin == after.end) return;
        if (!m_runs.empty() && m_runs.back().kind == kind) {
            m_runs.back().before.end = before.end;
            m_runs.back().after.end = after.end;
            return;
        }
        m_runs.push_back({kind, before, after});
    }

    static constexpr std::string_view kBlanks = " \t\n";

    std::string_view m_before;
    std::string_view m_after;
    std::size_t m_budget = kBudget;
    std::size_t m_byWords = kMostByWords;
    std::vector<DifferenceRun> m_runs;
};

}  // namespace

std::vector<DifferenceRun> differencesOf(std::string_view before, std::string_view after) {
    return Comparison(before, after).runs();
}

}  // namespace corvel::editing
