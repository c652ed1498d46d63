#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel::editing {

struct SearchQuery {
    std::string text;
    bool matchesCase = false;
    bool wholeWords = false;
    bool isPattern = false;  ///< a regular expression; "^" and "$" are the ends of lines

    bool operator==(const SearchQuery&) const = default;
};

enum class SearchFault {
    none,
    badPattern,
    tooSlow,  ///< the expression tries too many ways at one place
};

/// Where the text matches, in characters (code points) from its start; never empty.
struct SearchMatch {
    std::int32_t begin = 0;
    std::int32_t end = 0;
    bool operator==(const SearchMatch&) const = default;
};

/// What a text becomes when all matches are replaced.
struct AllReplaced {
    std::string text;                   ///< from the first match to the last
    std::vector<std::int32_t> lengths;  ///< of what each match became, in characters
};

/// The matches of a query in one text, found in slices of time: no expression, however bad, holds
/// the caller for longer than a tenth of a second more than it asked for.
class NoteSearch {
public:
    explicit NoteSearch(SearchQuery query);
    NoteSearch(const NoteSearch&) = delete;
    NoteSearch& operator=(const NoteSearch&) = delete;
    ~NoteSearch();

    /// The text comes in pieces of whole characters, all of it before the first `run`.
    void append(std::string_view piece);
    /// False when all is done, or nothing can be done.
    bool run(std::chrono::milliseconds limit);

    const SearchQuery& query() const { return m_query; }
    SearchFault fault() const { return m_fault; }
    bool isFinished() const { return m_isFinished; }
    /// In order; those found so far.
    const std::vector<SearchMatch>& matches() const { return m_matches; }

    std::optional<std::size_t> indexOf(const SearchMatch& match) const;
    /// The first match that begins at `position` or behind it; from the start when there is none.
    std::optional<std::size_t> nextFrom(std::int32_t position) const;
    /// The last match that ends at `position` or before it; from the end when there is none.
    std::optional<std::size_t> previousFrom(std::int32_t position) const;

    /// What the match becomes. With an expression, "$1" stands for its first group, "$0" for the
    /// match, "\n" and "\t" for a line end and a tab; else it is `replacement` as it stands.
    std::string replacementFor(std::size_t index, std::string_view replacement);
    AllReplaced allReplaced(std::string_view replacement);
    /// Where the character at `place` is once all are replaced; one in a match goes to its start.
    std::int32_t placeAfter(const AllReplaced& replaced, std::int32_t place) const;

private:
    class Engine;

    bool isWholeWord(std::int64_t begin, std::int64_t end) const;
    void addMatch(std::int64_t begin, std::int64_t end);
    void finish(SearchFault fault);

    struct Units {
        std::int32_t begin;
        std::int32_t end;
    };

    SearchQuery m_query;
    SearchFault m_fault = SearchFault::none;
    bool m_isStarted = false;
    bool m_isFinished = false;
    std::u16string m_text;
    std::unique_ptr<Engine> m_engine;  // reads m_text once it is complete
    std::vector<SearchMatch> m_matches;
    std::vector<Units> m_units;  // of the matches, in m_text
    std::int64_t m_position = 0;
    std::int32_t m_countedUnits = 0;
    std::int32_t m_countedCharacters = 0;
    std::chrono::steady_clock::duration m_overrun{};
};

}  // namespace corvel::editing
