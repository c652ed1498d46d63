#include "app/editing/EmphasisCommand.h"

#include "app/editing/EditList.h"
#include "app/editing/LinePrefix.h"
#include "platform/Characters.h"

#include <algorithm>

namespace corvel::editing {

namespace {

std::string_view markOf(Emphasis kind) {
    switch (kind) {
        case Emphasis::bold:
            return "**";
        case Emphasis::italic:
            return "*";
        case Emphasis::strikethrough:
            return "~~";
    }
    return {};
}

/// The part of one line that is to be marked, and the spans of that line.
struct Segment {
    TextRange range;
    std::vector<EmphasisSpan> spans;  // of the wanted kind, in offsets of the excerpt

    const EmphasisSpan* around() const {
        const auto found = std::ranges::find_if(spans, [this](const EmphasisSpan& span) {
            return span.open.begin <= range.begin && range.end <= span.close.end;
        });
        return found == spans.end() ? nullptr : &*found;
    }
};

// Where the words of the line begin: marks in front of a list's or heading's own would undo it.
std::size_t wordsBegin(std::string_view line) {
    const auto prefix = LinePrefix::of(line).end;
    const auto marks = std::min(line.find_first_not_of('#', prefix), line.size());
    const bool isHeading = marks > prefix && marks < line.size() && line[marks] == ' ';
    return isHeading ? std::min(line.find_first_not_of(' ', marks), line.size()) : prefix;
}

TextRange withoutBlankEnds(std::string_view text, TextRange range) {
    while (range.begin < range.end && text::isBlank(text::characterAt(text, range.begin)))
        range.begin = text::nextPosition(text, range.begin);
    while (range.begin < range.end && text::isBlank(text::characterBefore(text, range.end)))
        range.end = text::previousPosition(text, range.end);
    return range;
}

std::vector<EmphasisSpan> spansOf(std::string_view text, const TextRange& line, Emphasis kind) {
    std::vector<EmphasisSpan> found;
    const auto words = line.begin + wordsBegin(slice(text, line));
    for (auto span : emphasisSpansIn(text.substr(words, line.end - words))) {
        if (span.kind != kind) continue;
        for (auto* range : {&span.open, &span.close}) {
            range->begin += words;
            range->end += words;
        }
        found.push_back(span);
    }
    return found;
}

// An end of the selection within a mark takes in all of the mark.
void takeWholeMarks(Segment& segment) {
    for (const auto& span : segment.spans) {
        for (const auto& mark : {span.open, span.close}) {
            auto& [begin, end] = segment.range;
            if (mark.begin < begin && begin < mark.end) begin = mark.begin;
            if (mark.begin < end && end < mark.end) end = mark.end;
        }
    }
}

std::vector<Segment> segmentsOf(std::string_view text, const Selection& selection, Emphasis kind) {
    std::vector<Segment> segments;
    for (auto at = selection.begin(); at <= selection.end();) {
        const auto line = lineAt(text, at);
        const auto begin = std::max(selection.begin(), line.begin + wordsBegin(slice(text, line)));
        const auto end = std::min(selection.end(), line.end);
        const auto range = begin < end ? withoutBlankEnds(text, {begin, end}) : TextRange{};
        if (range.begin < range.end) {
            segments.push_back({range, spansOf(text, line, kind)});
            takeWholeMarks(segments.back());
        }
        at = line.end + 1;
    }
    return segments;
}

void removeMarks(EditList& edits, const EmphasisSpan& span) {
    edits.remove(span.open.begin, span.open.end);
    edits.remove(span.close.begin, span.close.end);
}

// What stays marked beside the unmarked part keeps its blanks outside of the marks.
void splitAround(EditList& edits, std::string_view text, const EmphasisSpan& span, TextRange part) {
    const std::string mark(slice(text, span.open));
    const auto content = span.content();
    const auto left = withoutBlankEnds(text, {content.begin, part.begin});
    const auto right = withoutBlankEnds(text, {part.end, content.end});
    if (left.begin < left.end) {
        edits.insert(left.end, mark);
    } else {
        edits.remove(span.open.begin, span.open.end);
    }
    if (right.begin < right.end) {
        edits.insert(right.begin, mark);
    } else {
        edits.remove(span.close.begin, span.close.end);
    }
}

void unmark(EditList& edits, std::string_view text, const Segment& segment) {
    const auto& span = *segment.around();
    const auto content = span.content();
    TextRange part{std::max(segment.range.begin, content.begin),
                   std::min(segment.range.end, content.end)};
    // Marks of other kinds around the part go with it.
    constexpr std::string_view kMarks = "*_~";
    while (part.begin > content.begin && kMarks.find(text[part.begin - 1]) != kMarks.npos)
        --part.begin;
    while (part.end < content.end && kMarks.find(text[part.end]) != kMarks.npos)
        ++part.end;
    splitAround(edits, text, span, part);
}

void mark(EditList& edits, const Segment& segment, Emphasis kind) {
    TextRange range = segment.range;
    for (const auto& span : segment.spans) {
        if (span.close.end <= segment.range.begin || segment.range.end <= span.open.begin) continue;
        range.begin = std::min(range.begin, span.open.begin);
        range.end = std::max(range.end, span.close.end);
        removeMarks(edits, span);
    }
    edits.insert(range.begin, std::string(markOf(kind)));
    edits.insert(range.end, std::string(markOf(kind)));
}

std::optional<TextEdit> toggledAtCursor(std::string_view text, std::size_t cursor, Emphasis kind) {
    const auto selection = Selection::at(cursor);
    const std::string pairMark(markOf(kind));
    const auto length = pairMark.size();
    const bool isInEmptyPair =
        text.substr(0, cursor).ends_with(pairMark) && text.substr(cursor).starts_with(pairMark);
    EditList edits;
    Segment segment{{cursor, cursor}, spansOf(text, lineAt(text, cursor), kind)};
    if (const auto* span = segment.around()) {
        removeMarks(edits, *span);
    } else if (const auto word = wordAt(text, cursor); word.begin < word.end) {
        segment.range = word;
        mark(edits, segment, kind);
        auto edit = edits.toEdit(text, selection);
        // Behind the word, what is typed next still belongs to it.
        if (cursor == word.end) edit.selection = Selection::at(cursor + length);
        return edit;
    } else if (isInEmptyPair) {
        edits.remove(cursor - length, cursor + length);
    } else {
        edits.insert(cursor, pairMark + pairMark);
        auto edit = edits.toEdit(text, selection);
        edit.selection = Selection::at(cursor + length);
        return edit;
    }
    return edits.toEdit(text, selection);
}

}  // namespace

std::optional<TextEdit> toggledEmphasis(std::string_view text,
                                        const Selection& selection,
                                        Emphasis kind) {
    if (selection.isEmpty()) return toggledAtCursor(text, selection.cursor, kind);
    const auto segments = segmentsOf(text, selection, kind);
    if (segments.empty()) return std::nullopt;
    const bool isMarked = std::ranges::all_of(
        segments, [](const Segment& segment) { return segment.around() != nullptr; });
    EditList edits;
    for (const auto& segment : segments) {
        if (isMarked) {
            unmark(edits, text, segment);
        } else if (segment.around() == nullptr) {
            mark(edits, segment, kind);
        }
    }
    return edits.toEdit(text, selection);
}

}  // namespace corvel::editing
