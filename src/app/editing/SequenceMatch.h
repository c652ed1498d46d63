#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace corvel::editing {

/// `count` elements that two sequences share, in order, from these places on.
struct MatchedStretch {
    std::size_t before = 0;
    std::size_t after = 0;
    std::size_t count = 0;

    bool operator==(const MatchedStretch&) const = default;
};

/// A common subsequence of two sequences, as stretches in order. Elements that stand once in each
/// tie them together first, as a reader would, then the least number of changes between those is
/// looked for. `budget` is what may be spent, about one for each comparison, and is lessened by
/// what was; when it runs out the answer is coarser, but as true.
std::vector<MatchedStretch> matchedStretches(std::span<const std::uint32_t> before,
                                             std::span<const std::uint32_t> after,
                                             std::size_t& budget);

}  // namespace corvel::editing
