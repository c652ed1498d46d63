#include "markdown/MarkdownRisk.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace corvel {

namespace {

constexpr std::size_t kLargeFrom = std::size_t{1} << 20U;
// Estimated nanoseconds beyond the ordinary; the factors below were measured.
constexpr double kCostLimit = 20e6;

using CharacterSet = std::array<bool, 256>;

constexpr CharacterSet setOf(std::string_view characters) {
    CharacterSet set{};
    for (const char character : characters)
        set[static_cast<unsigned char>(character)] = true;
    return set;
}

constexpr CharacterSet kPrefix = setOf(" \t>-*+.)0123456789");
constexpr CharacterSet kDelimiterRow = setOf(" \t>-*+.)0123456789|:");
constexpr CharacterSet kOpeners = setOf("<!]~");

bool isIn(const CharacterSet& set, char character) {
    return set[static_cast<unsigned char>(character)];
}

std::size_t runOf(const CharacterSet& set, std::string_view line) {
    std::size_t length = 0;
    while (length < line.size() && isIn(set, line[length]))
        ++length;
    return length;
}

std::uint64_t countOf(std::string_view text, char character) {
    return static_cast<std::uint64_t>(std::ranges::count(text, character));
}

// What one run of lines without a blank line holds: no paragraph or table reaches past it.
class BlockCost {
public:
    void addLine(std::string_view line) {
        m_bytes += line.size() + 1;
        ++m_lines;
        addOpeners(line);
        const bool isRow =
            runOf(kDelimiterRow, line) == line.size() && line.find('-') != std::string_view::npos;
        if (!isRow) return;
        const std::uint64_t columns = countOf(line, '|') + 1;
        m_delimiterRows += line.find_first_of("|:") == std::string_view::npos ? 0 : 1;
        if (columns <= m_columns) return;
        m_columns = columns;
        m_linesBefore = m_lines;
    }

    double cost() const {
        const auto bytes = static_cast<double>(m_bytes);
        return static_cast<double>(m_instructions) * bytes * 2 +
               static_cast<double>(m_images) * static_cast<double>(m_closings) * 4 +
               static_cast<double>(m_tildes) * static_cast<double>(m_closings) * 10 +
               delimiterRowCost() + tableCost();
    }

private:
    void addOpeners(std::string_view line) {
        for (std::size_t at = 0; at < line.size(); ++at) {
            if (!isIn(kOpeners, line[at])) continue;
            const char next = at + 1 < line.size() ? line[at + 1] : '\0';
            switch (line[at]) {
                case '<':
                    m_instructions += next == '?' || next == '!' ? 1 : 0;
                    break;
                case '!':
                    m_images += next == '[' ? 1 : 0;
                    break;
                case ']':
                    ++m_closings;
                    break;
                case '~':
                    ++m_tildes;
                    break;
                default:
                    break;
            }
        }
    }

    // Each row that may begin a table has the paragraph before it read again.
    double delimiterRowCost() const {
        return static_cast<double>(m_delimiterRows > 1 ? m_delimiterRows : 0) *
               static_cast<double>(m_bytes) * 4;
    }

    // Each row is filled up to the width of its table, and costs the square of it.
    double tableCost() const {
        const auto columns = static_cast<double>(m_columns);
        const auto rows = static_cast<double>(m_lines - std::min(m_lines, m_linesBefore) + 2);
        const double padding = std::max(0.0, columns * rows - static_cast<double>(m_bytes));
        return rows * columns * columns * 4 + padding * 1000;
    }

    std::uint64_t m_bytes = 0;
    std::uint64_t m_lines = 0;
    std::uint64_t m_linesBefore = 0;
    std::uint64_t m_columns = 0;
    std::uint64_t m_delimiterRows = 0;
    std::uint64_t m_instructions = 0;
    std::uint64_t m_images = 0;
    std::uint64_t m_closings = 0;
    std::uint64_t m_tildes = 0;
};

// Nested containers cost every line, blank ones too, a look at each level.
class NestingCost {
public:
    void addLine(std::string_view line) {
        ++m_lines;
        const std::size_t prefix = runOf(kPrefix, line);
        m_deepest = std::max<std::uint64_t>(m_deepest, prefix);
    }
    double cost() const {
        return static_cast<double>(m_deepest) * static_cast<double>(m_lines) * 2;
    }

private:
    std::uint64_t m_lines = 0;
    std::uint64_t m_deepest = 0;
};

// Every use of a reference writes its whole address.
class ReferenceCost {
public:
    void addLine(std::string_view line) {
        m_closings += countOf(line, ']');
        if (line.find("]:") != std::string_view::npos) {
            m_longest = std::max<std::uint64_t>(m_longest, line.size());
            m_pending = true;
        } else if (m_pending) {
            // The address may stand on the line behind its label.
            m_longest = std::max<std::uint64_t>(m_longest, line.size());
            m_pending = false;
        }
    }
    double cost() const { return static_cast<double>(m_closings) * static_cast<double>(m_longest); }

private:
    std::uint64_t m_closings = 0;
    std::uint64_t m_longest = 0;
    bool m_pending = false;
};

std::size_t lineEnd(std::string_view text) {
    const std::size_t feed = std::min(text.find('\n'), text.size());
    return std::min(text.substr(0, feed).find('\r'), feed);
}

bool isRisky(std::string_view markdown) {
    NestingCost nesting;
    ReferenceCost references;
    BlockCost block;
    double cost = 0;
    while (!markdown.empty()) {
        const std::size_t end = lineEnd(markdown);
        const std::string_view line = markdown.substr(0, end);
        markdown.remove_prefix(std::min(end + 1, markdown.size()));
        nesting.addLine(line);
        references.addLine(line);
        if (line.find_first_not_of(" \t") == std::string_view::npos) {
            cost += block.cost();
            block = {};
        } else {
            block.addLine(line);
        }
    }
    return cost + block.cost() + nesting.cost() + references.cost() > kCostLimit;
}

}  // namespace

MarkdownRisk riskOf(std::string_view markdown) {
    // What is long goes to the helper whatever it holds: no need to look.
    if (markdown.size() >= kLargeFrom) return MarkdownRisk::large;
    return isRisky(markdown) ? MarkdownRisk::risky : MarkdownRisk::ordinary;
}

}  // namespace corvel
