#include "library/TagScanner.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <set>

namespace corvel {

namespace {

constexpr std::string_view kFence = "```";

std::string withoutFences(std::string_view text) {
    std::string rest;
    std::size_t kept = 0;
    while (true) {
        const std::size_t open = text.find(kFence, kept);
        if (open == text.npos) break;
        const std::size_t close = text.find(kFence, open + kFence.size());
        if (close == text.npos) break;
        rest.append(text, kept, open - kept);
        kept = close + kFence.size();
    }
    rest.append(text, kept);
    return rest;
}

// Done in place: what is kept moves towards the start.
void removeSpans(std::string& text) {
    std::size_t written = std::min(text.find('`'), text.size());
    std::size_t read = written;
    while (read < text.size()) {
        // At a backtick: with another one right behind it, or none further on, it is plain text.
        const std::size_t close = text.find('`', read + 1);
        if (close == text.npos) break;
        if (close == read + 1) {
            text[written++] = '`';
            read = close;
            continue;
        }
        read = close + 1;
        const std::size_t next = std::min(text.find('`', read), text.size());
        std::copy(text.begin() + static_cast<std::ptrdiff_t>(read),
                  text.begin() + static_cast<std::ptrdiff_t>(next),
                  text.begin() + static_cast<std::ptrdiff_t>(written));
        written += next - read;
        read = next;
    }
    text.erase(written, read - written);
}

// As the regular expressions' \w and \s.
bool isWord(UChar32 character) {
    return u_isUAlphabetic(character) != 0 || u_isdigit(character) != 0 ||
           (U_GET_GC_MASK(character) & (U_GC_M_MASK | U_GC_PC_MASK)) != 0 || character == 0x200C ||
           character == 0x200D;
}

const std::uint8_t* bytesOf(std::string_view text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

bool isSpaceBefore(std::string_view text, std::size_t position) {
    const std::size_t length = std::min<std::size_t>(position, U8_MAX_LENGTH);
    const auto* bytes = bytesOf(text.substr(position - length));
    auto end = static_cast<std::int32_t>(length);
    UChar32 character = 0;
    U8_PREV(bytes, 0, end, character);
    return character >= 0 && u_isUWhiteSpace(character) != 0;
}

std::size_t endOfWord(std::string_view text, std::size_t position) {
    while (position < text.size()) {
        std::size_t next = position;
        UChar32 character = 0;
        U8_NEXT(bytesOf(text), next, text.size(), character);
        if (character < 0 || !isWord(character)) break;
        position = next;
    }
    return position;
}

}  // namespace

TagScanner::TagScanner(std::string_view text) : m_text(text) {
    if (text.find('`') == text.npos) return;
    m_copy = withoutFences(text);
    removeSpans(m_copy);
    m_text = m_copy;
}

std::vector<std::string> TagScanner::paths() const {
    std::set<std::string, std::less<>> found;
    std::size_t hash = m_text.find('#');
    for (; hash != m_text.npos && found.size() < kMostPaths; hash = m_text.find('#', hash + 1)) {
        if (hash > 0 && !isSpaceBefore(m_text, hash)) continue;
        std::size_t end = hash;  // of the path so far; then at its "#" or "/"
        for (std::size_t segments = 0; segments < kMostSegments; ++segments) {
            const std::size_t segmentEnd = endOfWord(m_text, end + 1);
            if (segmentEnd == end + 1 || segmentEnd - hash - 1 > kLongestPath) break;
            end = segmentEnd;
            found.emplace(m_text.substr(hash + 1, end - hash - 1));
            if (end == m_text.size() || m_text[end] != '/') break;
        }
    }
    return {found.begin(), found.end()};
}

}  // namespace corvel
