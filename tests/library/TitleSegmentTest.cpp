#include "library/FuzzyQuery.h"
#include "library/TitleSegment.h"
#include "platform/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace corvel {
namespace {

std::vector<RowId> searched(const TitleSegment& titles,
                            const std::string& query,
                            std::size_t limit) {
    TitleSegment::Hits hits;
    titles.search(
        FuzzyQuery(query), limit, [](RowId row) { return row % 7 != 3; }, hits);
    std::vector<RowId> rows;
    for (const auto& rank : hits) {
        rows.insert(rows.end(), rank.begin(), rank.end());
    }
    rows.resize(std::min(rows.size(), limit));
    return rows;
}

std::vector<RowId> ranked(const std::vector<std::string>& folded, const std::string& typed) {
    const FuzzyQuery query(typed);
    std::vector<std::pair<MatchRank, RowId>> found;
    for (std::size_t i = 0; i < folded.size(); ++i) {
        const auto rank = query.rank(folded[i]);
        if (rank && i % 7 != 3) found.emplace_back(*rank, static_cast<RowId>(i));
    }
    std::ranges::stable_sort(found, {}, &std::pair<MatchRank, RowId>::first);
    std::vector<RowId> rows;
    rows.reserve(found.size());
    for (const auto& [rank, row] : found) {
        rows.push_back(row);
    }
    return rows;
}

// Words of few letters meet each other's marks; thousands of titles fill more than one chunk.
class RandomTitles {
public:
    explicit RandomTitles(std::vector<std::string> alphabet) : m_alphabet(std::move(alphabet)) {}

    std::string text(std::size_t most) {
        std::string text;
        for (auto count = m_random() % (most + 1); count > 0; --count) {
            text += m_alphabet[m_random() % m_alphabet.size()];
        }
        return text;
    }

private:
    std::mt19937 m_random{20};
    std::vector<std::string> m_alphabet;
};

void expectPlainResults(RandomTitles random) {
    TitleSegment titles;
    std::vector<std::string> folded;
    for (RowId row = 0; row < 5'000; ++row) {
        const std::string title = random.text(20);
        titles.append(row, title);
        folded.push_back(text::foldedForSearch(title));
    }
    for (int i = 0; i < 150; ++i) {
        const std::string query = random.text(i < 120 ? 4 : 10);
        auto expected = ranked(folded, query);
        ASSERT_EQ(searched(titles, query, folded.size()), expected) << "query: " << query;
        expected.resize(std::min<std::size_t>(expected.size(), 20));
        ASSERT_EQ(searched(titles, query, 20), expected) << "query: " << query;
    }
}

TEST(TitleSegment, FindsWhatAPlainLookAtEachTitleFinds) {
    expectPlainResults(RandomTitles({"a", "b", "c", " ", "e"}));
    expectPlainResults(RandomTitles({"a", "語", "日", " ", "ą", "1", "6"}));
    expectPlainResults(RandomTitles({"x", "-", ".", " ", "Y", "ö"}));
}

}  // namespace
}  // namespace corvel
