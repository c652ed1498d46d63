#include "app/editing/BlockCommands.h"
#include "app/editing/EmphasisCommand.h"
#include "app/editing/ListEditing.h"
#include "app/editing/TypingPairs.h"
#include "platform/Text.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <random>

namespace corvel::editing {
namespace {

using Edit = std::function<std::optional<TextEdit>(std::string_view, const Selection&)>;

struct Command {
    const char* name;
    Edit edit;
    bool takesFences = false;
};

const std::array kCommands{
    Command{"heading", cycledHeading},
    Command{"tasks", toggledTasks},
    Command{"code", [](auto text, auto& where) { return toggledCodeBlock(text, where, false); },
            true},
    Command{"unfence", [](auto text, auto& where) { return toggledCodeBlock(text, where, true); },
            true},
    Command{"bold",
            [](auto text, auto& where) { return toggledEmphasis(text, where, Emphasis::bold); }},
    Command{"italic",
            [](auto text, auto& where) { return toggledEmphasis(text, where, Emphasis::italic); }},
    Command{"strike",
            [](auto text, auto& where) {
                return toggledEmphasis(text, where, Emphasis::strikethrough);
            }},
    Command{"deeper", [](auto text, auto& where) { return indented(text, where, Depth::deeper); }},
    Command{"shallower",
            [](auto text, auto& where) { return indented(text, where, Depth::shallower); }},
    Command{"enter",
            [](auto text, auto& where) { return lineEnded(text, Selection::at(where.cursor)); }},
    Command{"bracket", [](auto text, auto& where) { return typed(text, where, "(", Place::text); }},
    Command{"quote", [](auto text, auto& where) { return typed(text, where, "\"", Place::text); }},
    Command{"erase",
            [](auto text, auto& where) { return erased(text, Selection::at(where.cursor)); }},
};

/// The words of a text, which no command has a reason to touch; what Markdown is made of is left
/// out.
std::string wordsOf(std::string_view text) {
    std::string words;
    for (const char byte : text) {
        const bool isMark = std::string_view(" \t\n#*_~`[]()<>!\"-+.:/\\x0123456789").find(byte) !=
                            std::string_view::npos;
        if (!isMark) words += byte;
    }
    return words;
}

bool isPlace(std::string_view text, std::size_t position) {
    return position <= text.size() &&
           (position == text.size() ||
            (static_cast<unsigned char>(text[position]) & 0xC0U) != 0x80U);
}

/// What stands behind the marks of a fence goes with them.
bool hasNamedFence(std::string_view text) {
    for (std::size_t at = 0; at <= text.size(); at = lineAt(text, at).end + 1) {
        const auto line = slice(text, lineAt(text, at));
        const bool isFence = line.find("```") != line.npos || line.find("~~~") != line.npos;
        if (isFence && !wordsOf(line).empty()) return true;
    }
    return false;
}

class EditingKeepsWords : public testing::Test {
protected:
    std::size_t below(std::size_t end) { return m_random() % end; }

    std::string anyText() {
        static const std::array<const char*, 33> kPieces{
            "a",  "zażółć",  "語", "🙂", " ",        "  ",  "\t",    "\n",   "\n\n",
            "# ", "###### ", "- ", "* ",   "1. ",      "9) ", "> ",    "[ ] ", "[x] ",
            "**", "*",       "__", "_",    "~~",       "`",   "```\n", "~~~",  "[b](",
            ")",  "(",       "\"", "](",   "http://c", "\\"};
        std::string text;
        for (auto count = below(14); count > 0; --count)
            text += kPieces.at(below(kPieces.size()));
        return text;
    }

    std::size_t anyPlace(std::string_view text) {
        auto position = below(text.size() + 1);
        while (!isPlace(text, position))
            --position;
        return position;
    }

private:
    std::mt19937 m_random{20};
};

TEST_F(EditingKeepsWords, WhateverTheTextAndTheSelectionAre) {
    for (int i = 0; i < 60'000; ++i) {
        const auto text = anyText();
        const Selection where{anyPlace(text), anyPlace(text)};
        const auto& command = kCommands.at(below(kCommands.size()));
        SCOPED_TRACE(std::string(command.name) + " at " + std::to_string(where.anchor) + "-" +
                     std::to_string(where.cursor) + " in \"" + text + "\"");
        const auto edit = command.edit(text, where);
        if (!edit) continue;
        ASSERT_LE(edit->range.begin, edit->range.end);
        ASSERT_TRUE(isPlace(text, edit->range.begin) && isPlace(text, edit->range.end));
        const auto after = edit->appliedTo(text);
        const bool mayLose = command.takesFences && hasNamedFence(text);
        ASSERT_TRUE(mayLose || wordsOf(after) == wordsOf(text)) << after;
        ASSERT_TRUE(isPlace(after, edit->selection.anchor)) << after;
        ASSERT_TRUE(isPlace(after, edit->selection.cursor)) << after;
    }
}

// The address of a link goes with the link: that is what the command is for. The words stay.
TEST_F(EditingKeepsWords, ALinkIsPutInAndTakenOutInPlace) {
    for (int i = 0; i < 20'000; ++i) {
        const auto text = anyText();
        const Selection where{anyPlace(text), anyPlace(text)};
        SCOPED_TRACE(std::to_string(where.anchor) + "-" + std::to_string(where.cursor) + " in \"" +
                     text + "\"");
        const auto edit = toggledLink(text, where, "http://d/(e)");
        if (!edit) continue;
        const auto after = edit->appliedTo(text);
        ASSERT_TRUE(isPlace(after, edit->selection.anchor) &&
                    isPlace(after, edit->selection.cursor));
        const bool isLinked = edit->replacement.starts_with('[');
        if (isLinked) {
            ASSERT_EQ(wordsOf(after).find(wordsOf(text.substr(0, edit->range.begin))), 0U) << after;
            ASSERT_NE(wordsOf(edit->replacement).find(wordsOf(slice(text, edit->range))),
                      std::string::npos)
                << after;
        }
    }
}

}  // namespace
}  // namespace corvel::editing
