#include "markdown/BodyBlocks.h"

#include "markdown/BlockScanner.h"

#include <algorithm>
#include <utility>

namespace corvel {

BodyBlocks::BodyBlocks(std::string_view body) {
    BlockScanner scanner(body);
    for (;;) {
        const Boundary boundary{scanner.position(), scanner.nodeCount()};
        // What cannot be read may run into the text before it: no boundary stands there.
        if (boundary.offset != body.size() && !scanner.skipBlock()) return;
        m_boundaries.push_back(boundary);
        if (boundary.offset == body.size()) return;
    }
}

std::optional<BodyBlocks::Boundary> BodyBlocks::at(std::size_t offset) const {
    const auto found = std::ranges::lower_bound(m_boundaries, offset, {}, &Boundary::offset);
    if (found == m_boundaries.end() || found->offset != offset) return std::nullopt;
    return *found;
}

namespace {

using Boundary = BodyBlocks::Boundary;

// What is equal at the start gives equal boundaries; the last one that both have.
std::optional<Boundary> startOfRun(const BodyBlocks& oldBlocks,
                                   const BodyBlocks& newBlocks,
                                   std::size_t equal) {
    const auto& all = newBlocks.boundaries();
    auto found = std::ranges::upper_bound(all, equal, {}, &Boundary::offset);
    while (found != all.begin()) {
        --found;
        if (oldBlocks.at(found->offset)) return *found;
    }
    return std::nullopt;
}

}  // namespace

std::optional<ChangedBlocks> changedBlocks(std::string_view oldBody,
                                           const BodyBlocks& oldBlocks,
                                           std::string_view newBody,
                                           const BodyBlocks& newBlocks) {
    const auto head = std::ranges::mismatch(oldBody, newBody).in1;
    const auto equal = static_cast<std::size_t>(head - oldBody.begin());
    const auto start = startOfRun(oldBlocks, newBlocks, equal);
    if (!start) return std::nullopt;
    const std::string_view oldRest = oldBody.substr(start->offset);
    const std::string_view newRest = newBody.substr(start->offset);
    const auto tail =
        std::mismatch(oldRest.rbegin(), oldRest.rend(), newRest.rbegin(), newRest.rend());
    const auto equalTail = static_cast<std::size_t>(tail.first - oldRest.rbegin());

    // The first boundary that both have behind the last difference.
    const auto& all = oldBlocks.boundaries();
    auto end = std::ranges::lower_bound(all, oldBody.size() - equalTail, {}, &Boundary::offset);
    for (; end != all.end(); ++end) {
        const std::size_t newEnd = newBody.size() - (oldBody.size() - end->offset);
        if (newBlocks.at(newEnd)) {
            return ChangedBlocks{start->nodeIndex, end->nodeIndex, start->offset, newEnd};
        }
    }
    return std::nullopt;
}

}  // namespace corvel
