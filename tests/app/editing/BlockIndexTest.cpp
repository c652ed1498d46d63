#include "app/editing/BlockIndex.h"
#include "app/editing/SpellSpans.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <vector>

namespace corvel::editing {
namespace {

using Kind = BlockState::Kind;

/// A text as its lines, and an index that is told of every change.
struct Note {
    std::vector<std::string> lines;
    int read = 0;
    BlockIndex index{[this](int line) {
        ++read;
        const auto at = static_cast<std::size_t>(line);
        return at < lines.size() ? lines[at] : std::string();
    }};

    void replace(int line, int removed, const std::vector<std::string>& with) {
        const auto begin = lines.begin() + line;
        lines.erase(begin, begin + removed + 1);
        lines.insert(lines.begin() + line, with.begin(), with.end());
        index.textChanged(line, removed, static_cast<int>(with.size()) - 1);
    }
    BlockState fresh(int line) {
        return BlockIndex([this](int at) {
                   const auto i = static_cast<std::size_t>(at);
                   return i < lines.size() ? lines[i] : std::string();
               })
            .stateAt(line)
            .value();
    }
};

TEST(BlockIndex, KnowsFencesFrontMatterAndComments) {
    Note note{{"---", "title: x", "---", "text", "````", "```", "````", "<!-- a", "b -->", "c"}};
    EXPECT_EQ(note.index.stateAt(1)->kind, Kind::frontMatter);
    EXPECT_EQ(note.index.stateAt(3)->kind, Kind::text);
    EXPECT_EQ(note.index.stateAt(6)->kind, Kind::fence) << "a shorter fence closes nothing";
    EXPECT_EQ(note.index.stateAt(7)->kind, Kind::text);
    EXPECT_EQ(note.index.stateAt(8)->kind, Kind::comment);
    EXPECT_EQ(note.index.stateAt(9)->kind, Kind::text);
    Note rule{{"---", "Just text under a rule", "more"}};
    EXPECT_EQ(rule.index.stateAt(2)->kind, Kind::text);
}

TEST(BlockIndex, StaysRightThroughAnyEdits) {
    constexpr std::array kLines{"text", "```", "~~~", "a: b", "---", "<!--", "-->", "````"};
    std::mt19937 random(7);
    const auto pick = [&](std::size_t below) { return static_cast<int>(random() % below); };
    const auto anyLines = [&](int count) {
        std::vector<std::string> lines;
        for (int i = 0; i < count; ++i)
            lines.emplace_back(kLines.at(static_cast<std::size_t>(pick(kLines.size()))));
        return lines;
    };
    Note note{anyLines(12)};
    for (int round = 0; round < 3000; ++round) {
        const int line = pick(note.lines.size());
        const int most = static_cast<int>(note.lines.size()) - 1 - line;
        note.replace(line, std::min(most, pick(3)), anyLines(1 + pick(3)));
        const int asked = pick(note.lines.size() + 1);
        ASSERT_EQ(*note.index.stateAt(asked), note.fresh(asked)) << "round " << round;
    }
}

TEST(BlockIndex, ReadsOneLineForAKeyInALongNote) {
    Note note{std::vector<std::string>(50'000, "text")};
    EXPECT_FALSE(note.index.stateAt(49'999, 4000).has_value()) << "goes on at the next call";
    while (!note.index.stateAt(49'999)) {
    }
    note.read = 0;
    note.replace(20'000, 0, {"text!"});
    note.index.stateAt(49'999);
    EXPECT_LE(note.read, 2);
}

std::vector<std::string> words(const std::string& line, Kind kind = Kind::text) {
    std::vector<std::string> found;
    for (const auto& span : spellSpansIn(line, {kind}))
        found.push_back(line.substr(span.begin, span.end - span.begin));
    return found;
}

using Words = std::vector<std::string>;

TEST(SpellSpans, AreTheWordsOfProseOnly) {
    EXPECT_EQ(words("# Zażółć **gęślą**, it's o'clock."),
              (Words{"Zażółć", "gęślą", "it's", "o'clock"}));
    EXPECT_EQ(words("see `kode` and [teh link](http://exampel.org/a) ok"),
              (Words{"see", "and", "teh", "link", "ok"}));
    EXPECT_EQ(words("https://foo.bar #tag/sub a@b.pl notes.md C:\\dir www.x.y word"),
              Words{"word"});
    EXPECT_EQ(words("<b class=\"xyz\">bold</b> &nbsp; a < b <!-- note -->"), Words{"bold"});
    EXPECT_EQ(words("PKP iCloud HTML5 x2 snake_case I Wrocław"), Words{"Wrocław"});
    EXPECT_EQ(words("koniec.Nowe"), (Words{"koniec", "Nowe"}));
    EXPECT_EQ(words("[ref]: https://x.y \"titel\""), Words{});
    EXPECT_EQ(words("```python"), Words{});
    EXPECT_EQ(words("code words", Kind::fence), Words{});
    EXPECT_EQ(words("inside --> after", Kind::comment), Words{"after"});
}

}  // namespace
}  // namespace corvel::editing
