#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvel {

/// Puts lines together from a text that arrives in chunks. A line ends with LF or CRLF; neither is
/// part of it.
class LineSplitter {
public:
    enum class State { good, stopped, lineTooLong };

    /// Lines of more than `longest` bytes are refused.
    explicit LineSplitter(std::size_t longest) : m_longest(longest) {}

    /// Calls `take(std::string_view)` with each line that `chunk` completes, until it returns
    /// false. A line is valid during its call only.
    template <typename Take>
    State add(std::string_view chunk, const Take& take) {
        while (!chunk.empty()) {
            const auto end = chunk.find('\n');
            const auto part = chunk.substr(0, end);
            if (m_begun.size() + part.size() > m_longest) return State::lineTooLong;
            if (end == chunk.npos) {
                m_begun.append(part);
                break;
            }
            chunk.remove_prefix(end + 1);
            if (!take(withoutReturn(whole(part)))) return State::stopped;
            m_begun.clear();
        }
        return State::good;
    }

    /// What stands after the last line end.
    std::string_view rest() const { return m_begun; }

private:
    std::string_view whole(std::string_view part) {
        return m_begun.empty() ? part : std::string_view(m_begun.append(part));
    }
    static std::string_view withoutReturn(std::string_view line) {
        if (line.ends_with('\r')) line.remove_suffix(1);
        return line;
    }

    std::size_t m_longest;
    std::string m_begun;
};

}  // namespace corvel
