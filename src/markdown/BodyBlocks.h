#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace corvel {

/// Where the top-level blocks of a body begin, and at which child node of the page's content.
///
/// A web view's parser moves, closes and swallows elements by rules of its own. So only bodies in a
/// plain subset are read: known elements, nested as they are written, in the places where the
/// parser leaves them. From the first byte outside that subset on nothing is known.
class BodyBlocks {
public:
    struct Boundary {
        std::size_t offset;     ///< bytes from the start of the body
        std::size_t nodeIndex;  ///< child nodes of the content before it
        bool operator==(const Boundary&) const = default;
    };

    BodyBlocks() = default;
    explicit BodyBlocks(std::string_view body);

    /// In order, and the end of the body if everything was read.
    const std::vector<Boundary>& boundaries() const { return m_boundaries; }
    std::optional<Boundary> at(std::size_t offset) const;

private:
    std::vector<Boundary> m_boundaries;
};

/// The run of blocks in which two bodies differ: child nodes `firstNode` up to `endNode` of the old
/// body's page are to be replaced by bytes `begin` up to `end` of the new body.
struct ChangedBlocks {
    std::size_t firstNode;
    std::size_t endNode;
    std::size_t begin;
    std::size_t end;
    bool operator==(const ChangedBlocks&) const = default;
};

/// None when no run is known to make the same page as the whole new body would.
std::optional<ChangedBlocks> changedBlocks(std::string_view oldBody,
                                           const BodyBlocks& oldBlocks,
                                           std::string_view newBody,
                                           const BodyBlocks& newBlocks);

}  // namespace corvel
