#include "app/editing/SequenceMatch.h"

#include <algorithm>
#include <unordered_map>

namespace corvel::editing {

namespace {

using Elements = std::span<const std::uint32_t>;
using Stretches = std::vector<MatchedStretch>;

// The traces of a search take the square of its changes in memory.
constexpr std::size_t kMostChanges = 1000;

void add(Stretches& stretches, const MatchedStretch& added) {
    if (added.count == 0) return;
    if (!stretches.empty()) {
        auto& last = stretches.back();
        if (last.before + last.count == added.before && last.after + last.count == added.after) {
            last.count += added.count;
            return;
        }
    }
    stretches.push_back(added);
}

/// The greedy search for the fewest insertions and deletions (Myers, 1986).
class ShortestScript {
public:
    ShortestScript(Elements before, Elements after, std::size_t& budget)
        : m_before(before), m_after(after), m_budget(budget) {}

    /// None when the search had to be given up.
    Stretches stretches() {
        const auto most = std::min(m_before.size() + m_after.size(), kMostChanges);
        m_reach.assign(2 * most + 3, 0);
        m_middle = most + 1;
        for (std::size_t changes = 0; changes <= most; ++changes) {
            if (step(changes)) return traced(changes);
            if (m_budget == 0) break;
        }
        return {};
    }

private:
    // How far into `m_before` a diagonal has come; diagonals are numbered from the middle one on.
    std::size_t& reach(std::ptrdiff_t diagonal) {
        return m_reach[m_middle + static_cast<std::size_t>(diagonal)];
    }

    bool step(std::size_t changes) {
        const auto edge = static_cast<std::ptrdiff_t>(changes);
        const auto* first = &reach(-edge);
        m_traces.emplace_back(first, first + 2 * changes + 1);
        for (auto diagonal = -edge; diagonal <= edge; diagonal += 2) {
            std::size_t x = changes == 0 ? 0 : start(diagonal, edge);
            std::size_t y = x - static_cast<std::size_t>(diagonal);
            const std::size_t from = x;
            while (x < m_before.size() && y < m_after.size() && m_before[x] == m_after[y]) {
                ++x;
                ++y;
            }
            m_budget -= std::min(m_budget, x - from + 1);
            reach(diagonal) = x;
            if (x >= m_before.size() && y >= m_after.size()) return true;
        }
        return false;
    }

    std::size_t start(std::ptrdiff_t diagonal, std::ptrdiff_t edge) {
        const bool isDown =
            diagonal == -edge || (diagonal != edge && reach(diagonal - 1) < reach(diagonal + 1));
        return isDown ? reach(diagonal + 1) : reach(diagonal - 1) + 1;
    }

    Stretches traced(std::size_t changes) {
        Stretches stretches;
        std::size_t x = m_before.size();
        std::size_t y = m_after.size();
        for (; changes > 0; --changes) {
            // The reach before this step, of the diagonals -changes to changes.
            const auto& trace = m_traces[changes];
            const auto edge = static_cast<std::ptrdiff_t>(changes);
            const auto at = [&](std::ptrdiff_t d) {
                return trace[static_cast<std::size_t>(d + edge)];
            };
            const auto diagonal = static_cast<std::ptrdiff_t>(x) - static_cast<std::ptrdiff_t>(y);
            const bool isDown =
                diagonal == -edge || (diagonal != edge && at(diagonal - 1) < at(diagonal + 1));
            const auto previous = isDown ? diagonal + 1 : diagonal - 1;
            const std::size_t fromX = at(previous);
            const std::size_t startX = isDown ? fromX : fromX + 1;
            const std::size_t same = x - startX;
            if (same > 0) stretches.push_back({startX, y - same, same});
            x = fromX;
            y = fromX - static_cast<std::size_t>(previous);
        }
        if (x > 0) stretches.push_back({0, 0, x});
        std::reverse(stretches.begin(), stretches.end());
        return stretches;
    }

    Elements m_before;
    Elements m_after;
    std::size_t& m_budget;
    std::vector<std::size_t> m_reach;
    std::size_t m_middle = 0;
    std::vector<std::vector<std::size_t>> m_traces;
};

struct Anchor {
    std::size_t before = 0;
    std::size_t after = 0;
};

/// The elements that stand exactly once in each, in the order of the first.
std::vector<Anchor> singlesOf(Elements before, Elements after) {
    struct Places {
        std::uint32_t before = 0;
        std::uint32_t after = 0;
        std::size_t place = 0;
    };
    std::unordered_map<std::uint32_t, Places> all;
    all.reserve(before.size());
    for (const auto element : before)
        ++all[element].before;
    for (std::size_t i = 0; i < after.size(); ++i) {
        const auto found = all.find(after[i]);
        if (found == all.end()) continue;
        ++found->second.after;
        found->second.place = i;
    }
    std::vector<Anchor> singles;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const auto& places = all[before[i]];
        if (places.before == 1 && places.after == 1) singles.push_back({i, places.place});
    }
    return singles;
}

/// The longest choice of anchors that rises in both.
std::vector<Anchor> rising(const std::vector<Anchor>& anchors) {
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::vector<std::size_t> tops;  // of each pile, an index into `anchors`
    std::vector<std::size_t> below(anchors.size(), kNone);
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        const auto pile = std::lower_bound(
            tops.begin(), tops.end(), anchors[i].after,
            [&](std::size_t top, std::size_t value) { return anchors[top].after < value; });
        if (pile != tops.begin()) below[i] = *(pile - 1);
        if (pile == tops.end()) {
            tops.push_back(i);
        } else {
            *pile = i;
        }
    }
    std::vector<Anchor> chosen;
    for (auto i = tops.empty() ? kNone : tops.back(); i != kNone; i = below[i])
        chosen.push_back(anchors[i]);
    std::reverse(chosen.begin(), chosen.end());
    return chosen;
}

/// Fills `stretches` from one end of the sequences to the other.
class Matcher {
public:
    Matcher(Elements before, Elements after, std::size_t& budget)
        : m_before(before), m_after(after), m_budget(budget) {}

    Stretches stretches() {
        const std::size_t start = commonStart({0, 0}, {m_before.size(), m_after.size()});
        const Anchor from{start, start};
        const std::size_t end = commonEnd(from, {m_before.size(), m_after.size()});
        const Anchor to{m_before.size() - end, m_after.size() - end};
        add(m_stretches, {0, 0, start});
        between(from, to);
        add(m_stretches, {to.before, to.after, end});
        return std::move(m_stretches);
    }

private:
    void between(Anchor from, Anchor to) {
        const auto before = m_before.subspan(from.before, to.before - from.before);
        const auto after = m_after.subspan(from.after, to.after - from.after);
        if (before.empty() || after.empty()) return;
        auto position = from;
        for (const auto& anchor : rising(singlesOf(before, after))) {
            const Anchor place{from.before + anchor.before, from.after + anchor.after};
            if (place.before < position.before || place.after < position.after) continue;
            gap(position, place);
            const std::size_t same = commonStart(place, to);
            add(m_stretches, {place.before, place.after, same});
            position = {place.before + same, place.after + same};
        }
        gap(position, to);
    }

    void gap(Anchor from, Anchor to) {
        const std::size_t end = commonEnd(from, to);
        const auto before = m_before.subspan(from.before, to.before - from.before - end);
        const auto after = m_after.subspan(from.after, to.after - from.after - end);
        if (!before.empty() && !after.empty() && m_budget > 0) {
            for (const auto& found : ShortestScript(before, after, m_budget).stretches())
                add(m_stretches,
                    {from.before + found.before, from.after + found.after, found.count});
        }
        add(m_stretches, {to.before - end, to.after - end, end});
    }

    std::size_t commonStart(Anchor from, Anchor to) const {
        std::size_t same = 0;
        const auto most = std::min(to.before - from.before, to.after - from.after);
        while (same < most && m_before[from.before + same] == m_after[from.after + same])
            ++same;
        return same;
    }
    std::size_t commonEnd(Anchor from, Anchor to) const {
        std::size_t same = 0;
        const auto most = std::min(to.before - from.before, to.after - from.after);
        while (same < most && m_before[to.before - same - 1] == m_after[to.after - same - 1])
            ++same;
        return same;
    }

    Elements m_before;
    Elements m_after;
    std::size_t& m_budget;
    Stretches m_stretches;
};

}  // namespace

Stretches matchedStretches(Elements before, Elements after, std::size_t& budget) {
    return Matcher(before, after, budget).stretches();
}

}  // namespace corvel::editing
