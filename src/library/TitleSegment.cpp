#include "library/TitleSegment.h"

#include "platform/Text.h"

#include <algorithm>

namespace corvel {

void TitleSegment::append(RowId row, std::string_view title) {
    m_text += '\n';
    const std::size_t begin = m_text.size();
    text::foldForSearch(title, m_text);
    std::replace(m_text.begin() + static_cast<std::ptrdiff_t>(begin), m_text.end(), '\n', ' ');
    const std::string_view folded = std::string_view(m_text).substr(begin);
    m_marks.append(folded);
    m_begins.push_back(begin);
    m_rows.push_back(row);
}

std::size_t TitleSegment::memoryInBytes() const {
    return m_text.capacity() + m_begins.capacity() * sizeof(std::size_t) +
           m_rows.capacity() * sizeof(RowId) + m_marks.memoryInBytes();
}

}  // namespace corvel
