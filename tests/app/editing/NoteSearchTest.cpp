#include "app/editing/NoteSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <string>

namespace corvel::editing {
namespace {

using std::chrono::milliseconds;
using Matches = std::vector<SearchMatch>;

void finish(NoteSearch& search, const std::string& text) {
    search.append(text);
    while (search.run(milliseconds(5))) {
    }
}

Matches found(const SearchQuery& query, const std::string& text) {
    NoteSearch search(query);
    finish(search, text);
    EXPECT_EQ(search.fault(), SearchFault::none);
    return search.matches();
}

std::string replaced(const SearchQuery& query, const std::string& text, const std::string& with) {
    NoteSearch search(query);
    finish(search, text);
    return search.allReplaced(with).text;
}

TEST(NoteSearch, CountsCharactersAndHeedsItsSwitches) {
    EXPECT_EQ(found({"ŁÓDŹ"}, "😀 łódź Łódź"), (Matches{{2, 6}, {7, 11}}));
    EXPECT_EQ(found({"Łódź", true}, "😀 łódź Łódź"), (Matches{{7, 11}}));
    EXPECT_EQ(found({"kot", false, true}, "kot kotek _kot KOT."), (Matches{{0, 3}, {15, 18}}));
    EXPECT_EQ(found({"a.c*"}, "abc a.c*"), (Matches{{4, 8}})) << "no expression unless asked for";
    EXPECT_EQ(found({"^\\w+$", true, false, true}, "one\ntwo words\nthree"),
              (Matches{{0, 3}, {14, 19}}));
    EXPECT_EQ(found({"x*", true, false, true}, "axxa"), (Matches{{1, 3}})) << "nothing is no match";
    EXPECT_EQ(found({"b\\nc", true, false, true}, "ab\ncd"), (Matches{{1, 4}}));
    EXPECT_TRUE(found({""}, "text").empty());
}

TEST(NoteSearch, GoesRoundAtTheEnds) {
    NoteSearch search({"a"});
    finish(search, "a.a.a");
    EXPECT_EQ(search.nextFrom(1), 1U);
    EXPECT_EQ(search.nextFrom(5), 0U);
    EXPECT_EQ(search.previousFrom(4), 1U);
    EXPECT_EQ(search.previousFrom(0), 2U);
    EXPECT_EQ(search.indexOf({2, 3}), 1U);
    EXPECT_FALSE(search.indexOf({1, 2}).has_value());
}

TEST(NoteSearch, KnowsWhereAPlaceIsAfterAllAreReplaced) {
    NoteSearch search({"(k)ot", true, false, true});
    finish(search, "kot, 😀 kot; kot");
    const auto replaced = search.allReplaced("$1rólik");
    EXPECT_EQ(replaced.text, "królik, 😀 królik; królik");
    EXPECT_EQ(search.placeAfter(replaced, 0), 0);
    EXPECT_EQ(search.placeAfter(replaced, 5), 8) << "the picture";
    EXPECT_EQ(search.placeAfter(replaced, 9), 10) << "in the second match";
    EXPECT_EQ(search.placeAfter(search.allReplaced(""), 15), 6);
}

TEST(NoteSearch, ReplacesGroupsOnlyForExpressions) {
    const SearchQuery pattern{"(\\w+)@(\\w+)", true, false, true};
    EXPECT_EQ(replaced(pattern, "to ja@dom ty@praca.", "$2\\n$1 $9\\$"),
              "dom\nja $9$ praca\nty $9$");
    EXPECT_EQ(replaced({"a"}, "ab a", "$0\\n"), "$0\\nb $0\\n");
}

TEST(NoteSearch, RefusesBadExpressionsAtOnce) {
    for (const char* bad : {"(", "[a", "a{2", "*", "\\"}) {
        NoteSearch search({bad, true, false, true});
        EXPECT_EQ(search.fault(), SearchFault::badPattern) << bad;
        EXPECT_FALSE(search.run(milliseconds(5)));
    }
}

TEST(NoteSearch, GivesUpExpressionsThatWouldNeverEnd) {
    for (const char* slow : {"(a+)+$", "(a|aa)+b", "(.*)*x", "(?:a*)*b", "(.|\\n)*z"}) {
        NoteSearch search({slow, true, false, true});
        search.append(std::string(3'000'000, 'a') + "!");
        std::clock_t longest = 0;
        bool goesOn = true;
        while (goesOn) {
            const auto start = std::clock();
            goesOn = search.run(milliseconds(5));
            longest = std::max(longest, std::clock() - start);
        }
        EXPECT_EQ(search.fault(), SearchFault::tooSlow) << slow;
        EXPECT_LT(longest, CLOCKS_PER_SEC) << slow;
    }
}

TEST(NoteSearch, WorksInSlices) {
    std::string text;
    for (int i = 0; i < 400'000; ++i)
        text += "lorem ipsum needle ";
    NoteSearch search({"needle"});
    search.append(text);
    int slices = 1;
    while (search.run(milliseconds(2)))
        ++slices;
    EXPECT_EQ(search.matches().size(), 400'000U);
    EXPECT_GT(slices, 2);
}

}  // namespace
}  // namespace corvel::editing
