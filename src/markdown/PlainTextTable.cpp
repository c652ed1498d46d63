#include "markdown/PlainTextTable.h"

#include "markdown/PlainTextLines.h"

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

constexpr std::size_t kWidest = 40;  // what is longer stands out, but does not widen its column
constexpr std::size_t kGap = 2;

}  // namespace

void PlainTextTable::addCell(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    m_rows.back().push_back(std::move(text));
}

std::vector<std::size_t> PlainTextTable::widths() const {
    std::vector<std::size_t> widths;
    for (const auto& row : m_rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], std::min(columnsOf(row[i]), kWidest));
        }
    }
    return widths;
}

std::string PlainTextTable::text() const {
    const auto columns = widths();
    std::string text;
    for (std::size_t line = 0; line < m_rows.size(); ++line) {
        if (line > 0) text += '\n';
        const auto& row = m_rows[line];
        for (std::size_t i = 0; i < row.size(); ++i) {
            text += row[i];
            if (i + 1 == row.size()) break;
            const std::size_t used = std::min(columnsOf(row[i]), columns[i]);
            text.append(columns[i] - used + kGap, ' ');
        }
        if (line > 0) continue;
        text += '\n';
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (i > 0) text.append(kGap, ' ');
            for (std::size_t j = 0; j < std::max<std::size_t>(columns[i], 1); ++j)
                text += "─";
        }
    }
    return text;
}

}  // namespace corvel
