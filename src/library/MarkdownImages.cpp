#include "library/MarkdownImages.h"

#include "platform/Text.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <set>

namespace corvel {

namespace {

// How far the scanner looks for the end of what it has begun to read: keeps it linear.
constexpr std::size_t kLongestPart = 1024;

bool isPunctuation(char byte) {
    return std::ispunct(static_cast<unsigned char>(byte)) != 0;
}

int hexValue(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    const char lower = static_cast<char>(digit | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? hexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[i + 2]) : -1;
        if (low >= 0) {
            decoded.push_back(static_cast<char>(high * 16 + low));
            i += 2;
        } else {
            decoded.push_back(text[i]);
        }
    }
    return decoded;
}

std::string unescaped(std::string_view text) {
    constexpr std::string_view kAmpersand = "&amp;";
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size() && isPunctuation(text[i + 1])) ++i;
        plain.push_back(text[i]);
        if (text.substr(i).starts_with(kAmpersand)) i += kAmpersand.size() - 1;
    }
    return plain;
}

bool isRelative(std::string_view address) {
    if (address.empty() || address[0] == '/' || address[0] == '#' || address[0] == '?')
        return false;
    const std::size_t end = address.find_first_of(":/?#");
    return end == address.npos || address[end] != ':';
}

std::string labelKey(std::string_view label) {
    std::string key;
    for (const char byte : text::foldedForSearch(label)) {
        const bool isSpace = std::isspace(static_cast<unsigned char>(byte)) != 0;
        if (!isSpace) {
            key.push_back(byte);
        } else if (!key.empty() && key.back() != ' ') {
            key.push_back(' ');
        }
    }
    while (!key.empty() && key.back() == ' ')
        key.pop_back();
    return key;
}

class ImageScanner {
public:
    explicit ImageScanner(std::string_view text) : m_text(text), m_code(codeRangesIn(text)) {}

    std::vector<ImageReference> references() {
        scanImages();
        scanTags();
        if (!m_labels.empty()) scanDefinitions();
        std::sort(m_found.begin(), m_found.end(),
                  [](const auto& a, const auto& b) { return a.address.begin < b.address.begin; });
        return std::move(m_found);
    }

private:
    char at(std::size_t position) const {
        return position < m_text.size() ? m_text[position] : '\0';
    }

    void add(TextRange address) {
        const auto text = m_text.substr(address.begin, address.end - address.begin);
        auto path = percentDecoded(unescaped(text));
        if (!isRelative(text) || path.find('\0') != path.npos) return;
        m_found.push_back({address, std::move(path)});
    }

    void scanImages() {
        for (std::size_t mark = m_text.find("!["); mark != m_text.npos;
             mark = m_text.find("![", mark + 2)) {
            if (contains(m_code, mark) || (mark > 0 && m_text[mark - 1] == '\\')) continue;
            const auto close = endOfLabel(mark + 1);
            if (!close) continue;
            const auto label = m_text.substr(mark + 2, *close - mark - 2);
            if (at(*close + 1) == '(') {
                if (const auto address = inlineAddress(*close + 2)) add(*address);
            } else if (at(*close + 1) == '[' && at(*close + 2) != ']') {
                if (const auto end = endOfLabel(*close + 1)) {
                    m_labels.insert(labelKey(m_text.substr(*close + 2, *end - *close - 2)));
                }
            } else {
                m_labels.insert(labelKey(label));
            }
        }
    }

    // The bracket that closes the one at `open`.
    std::optional<std::size_t> endOfLabel(std::size_t open) const {
        std::size_t depth = 0;
        const std::size_t limit = std::min(open + kLongestPart, m_text.size());
        for (std::size_t i = open; i < limit; ++i) {
            if (m_text[i] == '\\') {
                ++i;
            } else if (m_text[i] == '[') {
                ++depth;
            } else if (m_text[i] == ']' && --depth == 0) {
                return i;
            } else if (m_text[i] == '\n' && at(i + 1) == '\n') {
                return std::nullopt;
            }
        }
        return std::nullopt;
    }

    std::size_t skipSpace(std::size_t position) const {
        return std::min(m_text.find_first_not_of(" \t\r\n", position), m_text.size());
    }

    // The address that begins at `position`; `end` is set behind it and its angle bracket.
    std::optional<TextRange> addressAt(std::size_t position, std::size_t& end) const {
        const std::size_t limit = std::min(position + kLongestPart, m_text.size());
        const bool isAngled = at(position) == '<';
        const std::size_t begin = isAngled ? position + 1 : position;
        int depth = 0;
        std::size_t i = begin;
        for (; i < limit; ++i) {
            const char byte = m_text[i];
            if (byte == '\\' && isPunctuation(at(i + 1))) {
                ++i;
            } else if (isAngled) {
                if (byte == '>') break;
                if (byte == '\n' || byte == '<') return std::nullopt;
            } else {
                if (static_cast<unsigned char>(byte) <= ' ') break;
                if (byte == '(') ++depth;
                if (byte == ')' && --depth < 0) break;
            }
        }
        if (isAngled && at(i) != '>') return std::nullopt;
        end = isAngled ? i + 1 : i;
        return TextRange{begin, i};
    }

    std::optional<TextRange> inlineAddress(std::size_t position) const {
        std::size_t end = 0;
        const auto address = addressAt(skipSpace(position), end);
        if (!address) return std::nullopt;
        std::size_t rest = skipSpace(end);
        const char quote = at(rest);
        if (rest > end && (quote == '"' || quote == '\'' || quote == '(')) {
            const auto window = m_text.substr(0, std::min(rest + kLongestPart, m_text.size()));
            std::size_t close = rest;
            do {
                close = window.find(quote == '(' ? ')' : quote, close + 1);
            } while (close != window.npos && window[close - 1] == '\\');
            if (close == window.npos) return std::nullopt;
            rest = skipSpace(close + 1);
        }
        return at(rest) == ')' ? address : std::nullopt;
    }

    // "[label]: address" at the start of a line, for labels that images use.
    void scanDefinitions() {
        for (std::size_t line = 0; line < m_text.size();) {
            const std::size_t start = m_text.find_first_not_of(' ', line);
            if (start != m_text.npos && start - line < 4 && m_text[start] == '[' &&
                !contains(m_code, start)) {
                addDefinition(start);
            }
            const std::size_t newline = m_text.find('\n', line);
            line = newline == m_text.npos ? m_text.size() : newline + 1;
        }
    }

    void addDefinition(std::size_t start) {
        const auto close = endOfLabel(start);
        if (!close || at(*close + 1) != ':') return;
        // The first definition of a label counts.
        if (m_labels.erase(labelKey(m_text.substr(start + 1, *close - start - 1))) == 0) return;
        std::size_t end = 0;
        if (const auto address = addressAt(skipSpace(*close + 2), end)) add(*address);
    }

    bool isImageTag(std::size_t position) const {
        constexpr std::string_view kName = "img";
        for (std::size_t i = 0; i < kName.size(); ++i) {
            if ((at(position + 1 + i) | 0x20) != kName[i]) return false;
        }
        return std::isspace(static_cast<unsigned char>(at(position + 4))) != 0;
    }

    void scanTags() {
        for (std::size_t open = m_text.find('<'); open != m_text.npos;
             open = m_text.find('<', open + 1)) {
            if (isImageTag(open) && !contains(m_code, open)) addTag(open + 4);
        }
    }

    // Reads attributes up to the one named "src".
    void addTag(std::size_t position) {
        const std::size_t limit = std::min(position + kLongestPart, m_text.size());
        while (position < limit && m_text[position] != '>') {
            position = skipSpace(position);
            const std::size_t nameEnd =
                std::min(m_text.find_first_of(" \t\r\n=>", position), m_text.size());
            const auto name = text::lowercased(m_text.substr(position, nameEnd - position));
            position = skipSpace(nameEnd);
            if (at(position) != '=') {
                if (position == nameEnd && at(position) != '>') ++position;
                continue;
            }
            position = skipSpace(position + 1);
            const char quote = at(position);
            const bool isQuoted = quote == '"' || quote == '\'';
            const std::size_t begin = isQuoted ? position + 1 : position;
            const std::size_t end =
                isQuoted ? m_text.find(quote, begin) : m_text.find_first_of(" \t\r\n>", begin);
            if (end == m_text.npos || end > limit) return;
            if (name == "src") return add({begin, end});
            position = isQuoted ? end + 1 : end;
        }
    }

    std::string_view m_text;
    std::vector<TextRange> m_code;
    std::vector<ImageReference> m_found;
    std::set<std::string> m_labels;
};

// A cheap look before the whole text is read: most have no image at all.
bool mayHoldImage(std::string_view text) {
    if (text.find("![") != text.npos) return true;
    for (auto open = text.find('<'); open != text.npos; open = text.find('<', open + 1)) {
        if (open + 1 < text.size() && (text[open + 1] | 0x20) == 'i') return true;
    }
    return false;
}

}  // namespace

std::vector<ImageReference> imageReferencesIn(std::string_view markdown) {
    if (!mayHoldImage(markdown)) return {};
    return ImageScanner(markdown).references();
}

}  // namespace corvel
