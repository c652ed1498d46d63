#include "app/editing/SpellSpans.h"

#include "platform/Characters.h"

#include <algorithm>
#include <utility>

namespace corvel::editing {

namespace {

constexpr std::string_view kBetweenTokens = " \t\r\n()[]<>\"";

bool isApostrophe(char32_t character) {
    return character == U'\'' || character == U'’';
}

/// Finds the words, having found what is no prose first.
class SpanReader {
public:
    explicit SpanReader(std::string_view line) : m_line(line), m_skipped(codeRangesIn(line)) {
        skipDestinations();
        skipTags();
        skipTokens();
        std::ranges::sort(m_skipped, {}, &TextRange::begin);
    }

    std::vector<TextRange> spans() {
        auto skipped = m_skipped.begin();
        for (std::size_t at = 0; at < m_line.size();) {
            while (skipped != m_skipped.end() && skipped->end <= at)
                ++skipped;
            if (skipped != m_skipped.end() && skipped->begin <= at) {
                at = skipped->end;
            } else {
                at = readWord(at);
            }
        }
        return std::move(m_spans);
    }

private:
    void skip(std::size_t begin, std::size_t end) {
        m_skipped.push_back({begin, std::min(end, m_line.size())});
    }

    // Addresses behind the words of links, and those of link definitions.
    void skipDestinations() {
        for (auto at = m_line.find("]("); at != m_line.npos; at = m_line.find("](", at + 2))
            skip(at + 1, m_line.find(')', at));
        const auto definition = m_line.find("]: ");
        if (m_line.starts_with('[') && definition != m_line.npos) skip(0, m_line.size());
    }

    // "<b>", "<!-- … -->" and "&nbsp;".
    void skipTags() {
        for (auto at = m_line.find('<'); at != m_line.npos; at = m_line.find('<', at + 1)) {
            const bool isComment = m_line.substr(at).starts_with("<!--");
            const auto next = text::characterAt(m_line, at + 1);
            const bool isTag = isComment || next == U'/' || next == U'!' || text::isLetter(next);
            const auto end = m_line.find(isComment ? "-->" : ">", at);
            if (isTag && (isComment || end != m_line.npos)) skip(at, end);
        }
        for (auto at = m_line.find('&'); at != m_line.npos; at = m_line.find('&', at + 1)) {
            const auto end = m_line.find_first_of("; \t", at);
            if (end != m_line.npos && m_line[end] == ';') skip(at, end);
        }
    }

    // Tags, addresses without marks, names of files: what stands between blanks and brackets tells.
    void skipTokens() {
        auto begin = m_line.find_first_not_of(kBetweenTokens);
        while (begin != m_line.npos) {
            const auto end = std::min(m_line.find_first_of(kBetweenTokens, begin), m_line.size());
            if (isNoProse(m_line.substr(begin, end - begin))) skip(begin, end);
            begin = m_line.find_first_not_of(kBetweenTokens, end);
        }
    }

    static bool isNoProse(std::string_view token) {
        const bool isTag = token.size() > 1 && token[0] == '#' &&
                           text::isWordCharacter(text::characterAt(token, 1));
        if (isTag || token.find("://") != token.npos || token.starts_with("www.")) return true;
        const auto mark = token.find_first_of("@\\");
        if (mark != token.npos && mark + 1 < token.size()) return true;
        return hasInnerDot(token);
    }

    // "notes.md", but not "koniec.Nowe zdanie".
    static bool hasInnerDot(std::string_view token) {
        for (auto at = token.find('.'); at != token.npos; at = token.find('.', at + 1)) {
            const auto next = text::characterAt(token, at + 1);
            const bool isInner = text::isWordCharacter(text::characterBefore(token, at)) &&
                                 text::isWordCharacter(next) && !text::isUpperCase(next);
            if (isInner) return true;
        }
        return false;
    }

    // The position behind the word, or behind the character that begins none.
    std::size_t readWord(std::size_t begin) {
        auto end = begin;
        bool isPlain = true;
        std::size_t letters = 0;
        while (true) {
            const auto character = text::characterAt(m_line, end);
            const auto behind = text::nextPosition(m_line, end);
            const bool joins = isApostrophe(character) && letters > 0 &&
                               text::isLetter(text::characterAt(m_line, behind));
            if (!joins && !text::isWordCharacter(character)) break;
            if (!joins && !text::isLetter(character)) isPlain = false;
            if (letters > 0 && text::isUpperCase(character)) isPlain = false;
            if (text::isLetter(character)) ++letters;
            end = behind;
        }
        if (end == begin) return text::nextPosition(m_line, begin);
        if (isPlain && letters > 1) m_spans.push_back({begin, end});
        return end;
    }

    std::string_view m_line;
    std::vector<TextRange> m_skipped;
    std::vector<TextRange> m_spans;
};

}  // namespace

std::vector<TextRange> spellSpansIn(std::string_view line, const BlockState& startsIn) {
    using Kind = BlockState::Kind;
    if (startsIn.kind == Kind::fence || startsIn.kind == Kind::frontMatter) return {};
    if (MarkdownFence::openedBy(line).length > 0) return {};
    if (startsIn.kind != Kind::comment) return SpanReader(line).spans();
    const auto end = line.find("-->");
    if (end == line.npos) return {};
    auto spans = SpanReader(line.substr(end)).spans();
    for (auto& span : spans) {
        span.begin += end;
        span.end += end;
    }
    return spans;
}

}  // namespace corvel::editing
