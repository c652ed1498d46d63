#pragma once

#include "app/settings/Localisation.h"
#include "library/SearchIndex.h"
#include "platform/ScopedConnection.h"

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace corvel {

class Library;

/// Answers the desktop's search: notes outside the trash by terms, each somewhere in title or text,
/// newest first. Works with and without a window. Questions and ids come from anywhere.
class DesktopSearch {
public:
    static constexpr std::size_t kMostHits = 25;
    /// Longer questions, in bytes of all terms, are answered with nothing.
    static constexpr std::size_t kLongestQuestion = 2000;

    struct Hit {
        std::string id;
        std::string title;
        std::string excerpt;  ///< one line of plain text, without Markdown's marks; may be empty
        bool operator==(const Hit&) const = default;
    };
    using Found = std::function<void(const std::vector<std::string>& ids)>;

    DesktopSearch(Library& library, const Localisation& texts);  // both must outlive the search
    ~DesktopSearch();

    /// Calls `found` once, on the main loop, never before this function returns. Terms of marks
    /// and spaces alone are left out; without any other there is nothing to find.
    void find(const std::vector<std::string>& terms, Found found);
    /// What is known of the notes among `ids` that are still there, in the same order.
    std::vector<Hit> describe(const std::vector<std::string>& ids) const;
    /// What to look for in the window, where a query is one text: the terms as one would type them
    /// if they stand together somewhere, else the longest.
    std::string queryFor(const std::vector<std::string>& terms) const;

private:
    struct Question {
        std::vector<std::string> terms;
        Found found;
        std::unique_ptr<SearchIndex::Sweep> sweep;
        std::vector<std::string> ids;
    };

    bool workOnce();
    bool search(Question& question) const;
    void collect(Question& question) const;
    bool isSomewhere(const std::string& query) const;
    void answerFirst();

    Library& m_library;
    const Localisation& m_texts;
    std::list<Question> m_questions;
    ScopedConnection m_work;
};

}  // namespace corvel
