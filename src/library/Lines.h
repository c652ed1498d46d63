#pragma once

#include <cstddef>
#include <string_view>

namespace corvel {

/// The lines of a text, without their ends: CR LF and every newline character of Unicode end one.
class Lines {
public:
    explicit Lines(std::string_view text) : m_text(text) {}

    /// False when all lines have been given.
    bool next(std::string_view& line) {
        if (m_isFinished) return false;
        const std::size_t end = endOfLine(m_text, m_position);
        line = m_text.substr(m_position, end - m_position);
        m_isFinished = end == m_text.size();
        m_position = end + newlineLength(m_text, end);
        return true;
    }

    /// Bytes of the newline at `position`; zero when there is none.
    static std::size_t newlineLength(std::string_view text, std::size_t position) {
        const auto rest = text.substr(position);
        if (rest.empty()) return 0;
        if (rest.starts_with("\r\n")) return 2;
        if (rest[0] >= '\n' && rest[0] <= '\r') return 1;
        if (rest.starts_with("\u0085")) return 2;
        return rest.starts_with("\u2028") || rest.starts_with("\u2029") ? 3 : 0;
    }

private:
    static std::size_t endOfLine(std::string_view text, std::size_t position) {
        for (; position < text.size(); ++position) {
            const char byte = text[position];
            const bool mayEnd = (byte >= '\n' && byte <= '\r') || byte == '\xC2' || byte == '\xE2';
            if (mayEnd && newlineLength(text, position) > 0) break;
        }
        return position;
    }

    std::string_view m_text;
    std::size_t m_position = 0;
    bool m_isFinished = false;
};

/// `text` without spaces and tabs at its ends.
inline std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlank = " \t";
    const std::size_t start = text.find_first_not_of(kBlank);
    if (start == text.npos) return {};
    return text.substr(start, text.find_last_not_of(kBlank) + 1 - start);
}

}  // namespace corvel
