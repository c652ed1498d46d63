#pragma once

#include <string>
#include <vector>

namespace corvel {

/// A table as text in columns, with a rule below its head.
class PlainTextTable {
public:
    void beginRow() { m_rows.emplace_back(); }
    void addCell(std::string text);
    std::string text() const;

private:
    std::vector<std::size_t> widths() const;

    std::vector<std::vector<std::string>> m_rows;
};

}  // namespace corvel
