#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace corvel {

/// Reads a body block by block, in the subset of HTML that a web view's parser takes as it is
/// written.
class BlockScanner {
public:
    explicit BlockScanner(std::string_view body) : m_body(body) {}

    /// Where the next block begins.
    std::size_t position() const { return m_position; }
    /// Nodes that the blocks before it become.
    std::size_t nodeCount() const { return m_nodes; }
    /// False at the end, and before a block that is not known to stay as it is written, or whose
    /// following text would run into the next one.
    bool skipBlock();

private:
    enum class Kind {
        none,
        block,
        phrasesOnly,
        list,
        item,
        table,
        rows,
        row,
        cell,
        inlined,
        empty
    };
    struct Element {
        std::string_view name;
        Kind kind;
    };
    struct Tag {
        std::string_view name;
        bool isClosing;
    };

    static Kind kindOf(std::string_view name);
    bool readElement();
    bool readTag(Tag& tag);
    bool skipAttributes();
    bool skipText();
    bool open(std::string_view name);
    bool close(std::string_view name);
    bool mayHold(Kind kind, std::string_view name) const;
    bool isInsideLink() const;

    std::string_view m_body;
    std::size_t m_position = 0;
    std::size_t m_nodes = 0;
    std::vector<Element> m_open;
};

}  // namespace corvel
