#include "app/editing/TypingPairs.h"

#include "platform/Characters.h"

#include <algorithm>
#include <array>

namespace corvel::editing {

namespace {

struct Pair {
    std::string_view open;
    std::string_view close;
};

constexpr std::array kBrackets{Pair{"(", ")"}, Pair{"[", "]"}, Pair{"{", "}"}, Pair{"„", "”"},
                               Pair{"«", "»"}};
constexpr std::array<std::string_view, 3> kQuotes{"\"", "'", "`"};
constexpr std::string_view kEmphasis = "*_~";  // in pairs once they are two

const Pair* bracketOpening(std::string_view character) {
    const auto found = std::ranges::find(kBrackets, character, &Pair::open);
    return found == kBrackets.end() ? nullptr : &*found;
}

const Pair* bracketClosing(std::string_view character) {
    const auto found = std::ranges::find(kBrackets, character, &Pair::close);
    return found == kBrackets.end() ? nullptr : &*found;
}

bool isQuote(std::string_view character) {
    return std::ranges::find(kQuotes, character) != kQuotes.end();
}

bool isEmphasis(std::string_view character) {
    return character.size() == 1 && kEmphasis.find(character[0]) != kEmphasis.npos;
}

/// The line of a cursor, cut at the cursor.
class Line {
public:
    Line(std::string_view text, std::size_t cursor)
        : m_text(text), m_cursor(cursor), m_line(lineAt(text, cursor)) {}

    std::string_view before() const { return m_text.substr(m_line.begin, m_cursor - m_line.begin); }
    std::string_view after() const { return m_text.substr(m_cursor, m_line.end - m_cursor); }
    char32_t previous() const { return text::characterBefore(before(), before().size()); }
    char32_t next() const { return text::characterAt(after(), 0); }

    bool isEscaped() const {
        const auto slashes = before().size() - (before().find_last_not_of('\\') + 1);
        return slashes % 2 == 1;
    }
    /// Nothing follows that the closing mark would cling to.
    bool mayCloseHere() const {
        constexpr std::u32string_view kBehind = U")]}>.,;:!?\"'”’»*_~`…";
        return text::isBlank(next()) || kBehind.find(next()) != kBehind.npos;
    }

private:
    std::string_view m_text;
    std::size_t m_cursor;
    TextRange m_line;
};

std::size_t count(std::string_view text, std::string_view part) {
    std::size_t found = 0;
    for (auto at = text.find(part); at != text.npos; at = text.find(part, at + part.size()))
        ++found;
    return found;
}

// Brackets opened before the cursor and not closed there.
std::size_t openBefore(std::string_view before, const Pair& pair) {
    std::size_t open = 0;
    for (std::size_t at = 0; at < before.size(); at = text::nextPosition(before, at)) {
        const auto rest = before.substr(at);
        if (rest.starts_with(pair.open)) ++open;
        if (rest.starts_with(pair.close) && open > 0) --open;
    }
    return open;
}

// Without those that stand between letters: apostrophes.
std::size_t quotesIn(std::string_view line, std::string_view quote) {
    std::size_t found = 0;
    for (auto at = line.find(quote); at != line.npos; at = line.find(quote, at + 1)) {
        const bool isApostrophe = text::isWordCharacter(text::characterBefore(line, at)) &&
                                  text::isWordCharacter(text::characterAt(line, at + 1));
        if (!isApostrophe) ++found;
    }
    return found;
}

std::size_t runBefore(std::string_view before, char mark) {
    return before.size() - (before.find_last_not_of(mark) + 1);
}

std::size_t runAfter(std::string_view after, char mark) {
    return std::min(after.find_first_not_of(mark), after.size());
}

TextEdit inserted(std::size_t at, std::string text, std::size_t cursor) {
    return {{at, at}, std::move(text), Selection::at(at + cursor)};
}

// The cursor goes past what stands there already.
TextEdit passed(std::size_t at, std::size_t length) {
    return {{at, at}, {}, Selection::at(at + length)};
}

std::optional<TextEdit> wrapped(std::string_view text,
                                const Selection& selection,
                                std::string_view character,
                                Place place) {
    const auto* bracket = bracketOpening(character);
    const bool isMark = isEmphasis(character) || character == "`";
    if (bracket == nullptr && !isMark && !isQuote(character)) return std::nullopt;
    const TextRange range{selection.begin(), selection.end()};
    const auto selected = slice(text, range);
    const bool isParagraph = selected.find('\n') == selected.npos;
    if (isMark && (place == Place::code || !isParagraph || text::isBlank(selected[0])))
        return std::nullopt;
    const auto close = bracket != nullptr ? bracket->close : character;
    TextEdit edit{range, std::string(character), selection};
    edit.replacement.append(selected).append(close);
    edit.selection.anchor += character.size();
    edit.selection.cursor += character.size();
    return edit;
}

std::optional<TextEdit> closing(const Line& line, std::size_t cursor, const Pair& pair) {
    const auto open = openBefore(line.before(), pair);
    const bool isOver =
        line.after().starts_with(pair.close) && open > 0 && count(line.after(), pair.close) >= open;
    if (!isOver) return std::nullopt;
    return passed(cursor, pair.close.size());
}

std::optional<TextEdit> quoted(const Line& line, std::size_t cursor, std::string_view quote) {
    const bool isOpen = quotesIn(line.before(), quote) % 2 == 1;
    if (line.after().starts_with(quote) && isOpen) return passed(cursor, quote.size());
    const char32_t previous = line.previous();
    const bool isFree = text::isBlank(previous) ||
                        (text::isPunctuation(previous) && previous != U'"' && previous != U'\'' &&
                         previous != U'`' && previous != U'”' && previous != U'’');
    if (isOpen || !isFree || !line.mayCloseHere()) return std::nullopt;
    return inserted(cursor, std::string(quote) + std::string(quote), quote.size());
}

// Two marks open what four close; a third says that a rule or something else was meant.
std::optional<TextEdit> emphasised(const Line& line, std::size_t cursor, char mark) {
    const auto left = runBefore(line.before(), mark);
    const auto right = runAfter(line.after(), mark);
    const std::string two(2, mark);
    if (left == 2 && right == 2)
        return TextEdit{{cursor, cursor + 2}, {mark}, Selection::at(cursor + 1)};
    const auto earlier = line.before().substr(0, line.before().size() - left);
    const bool isOpen = count(earlier, two) % 2 == 1;
    if (isOpen && right > 0 && left + right == 2) return passed(cursor, 1);
    const auto behind = text::characterBefore(earlier, earlier.size());
    const bool isFree = text::isBlank(behind) || text::isPunctuation(behind);
    if (isOpen || left != 1 || right > 0 || !isFree || !line.mayCloseHere()) return std::nullopt;
    return inserted(cursor, two + mark, 1);
}

}  // namespace

std::optional<TextEdit> typed(std::string_view text,
                              const Selection& selection,
                              std::string_view character,
                              Place place) {
    if (!selection.isEmpty()) return wrapped(text, selection, character, place);
    const auto cursor = selection.cursor;
    const Line line(text, cursor);
    if (line.isEscaped()) return std::nullopt;
    if (const auto* pair = bracketClosing(character)) return closing(line, cursor, *pair);
    if (const auto* pair = bracketOpening(character)) {
        if (!line.mayCloseHere()) return std::nullopt;
        return inserted(cursor, std::string(pair->open) + std::string(pair->close),
                        pair->open.size());
    }
    if (place == Place::code && character != "\"") {
        // The end of the code span one is in.
        const bool isEnd = character == "`" && line.after().starts_with("`");
        return isEnd ? std::optional(passed(cursor, 1)) : std::nullopt;
    }
    if (isQuote(character)) return quoted(line, cursor, character);
    return isEmphasis(character) ? emphasised(line, cursor, character[0]) : std::nullopt;
}

std::optional<TextEdit> erased(std::string_view text, const Selection& selection) {
    if (!selection.isEmpty()) return std::nullopt;
    const auto cursor = selection.cursor;
    const Line line(text, cursor);
    const auto between = [&](std::string_view open, std::string_view close) {
        return line.before().ends_with(open) && line.after().starts_with(close);
    };
    const auto taken = [&](std::size_t left, std::size_t right) {
        return TextEdit{{cursor - left, cursor + right}, {}, Selection::at(cursor - left)};
    };
    for (const auto& pair : kBrackets) {
        if (between(pair.open, pair.close)) return taken(pair.open.size(), pair.close.size());
    }
    for (const auto quote : kQuotes) {
        if (between(quote, quote)) return taken(1, 1);
    }
    for (const char mark : kEmphasis) {
        const bool isPair =
            runBefore(line.before(), mark) == 2 && runAfter(line.after(), mark) == 2;
        if (isPair) return taken(1, 2);
    }
    return std::nullopt;
}

}  // namespace corvel::editing
