#include "app/DesktopSearch.h"

#include "app/Texts.h"
#include "library/Library.h"
#include "platform/Log.h"
#include "platform/StoreError.h"
#include "platform/Text.h"

#include <glibmm/main.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace corvel {

namespace {

constexpr std::chrono::milliseconds kSlice{8};
/// Whoever asks more at once has stopped listening to the first.
constexpr std::size_t kMostQuestions = 8;
constexpr std::size_t kMostDescribed = 100;

std::vector<std::string> usable(const std::vector<std::string>& terms) {
    std::size_t size = 0;
    std::vector<std::string> kept;
    for (const auto& term : terms) {
        size += term.size() + 1;
        if (size > DesktopSearch::kLongestQuestion) return {};
        const auto folded = text::foldedForSearch(term);
        if (folded.find_first_not_of(" \t\r\n") != std::string::npos) kept.push_back(term);
    }
    return kept;
}

// One line that any shell can show: control characters would break it.
std::string oneLine(const std::string& text) {
    std::string line = text::repaired(text);
    std::ranges::replace_if(
        line, [](unsigned char byte) { return byte < ' ' || byte == 0x7F; }, ' ');
    return line;
}

}  // namespace

DesktopSearch::DesktopSearch(Library& library, const Localisation& texts)
    : m_library(library), m_texts(texts) {}

DesktopSearch::~DesktopSearch() = default;

void DesktopSearch::find(const std::vector<std::string>& terms, Found found) {
    if (m_questions.size() >= kMostQuestions) answerFirst();
    m_questions.push_back({usable(terms), std::move(found), nullptr, {}});
    if (!m_work.connected()) m_work = Glib::signal_idle().connect([this] { return workOnce(); });
}

bool DesktopSearch::workOnce() {
    if (!m_questions.empty() && search(m_questions.front())) answerFirst();
    return !m_questions.empty();
}

// True when the question can be answered.
bool DesktopSearch::search(Question& question) const {
    if (question.terms.empty()) return true;
    try {
        // A note that changed meanwhile ends a sweep; what it would still have found is asked anew.
        if (!question.sweep || question.sweep->isStale()) {
            question.ids.clear();
            question.sweep = m_library.searchIndex.searchAll(question.terms);
        }
        collect(question);
        return (question.sweep->isFinished() && !question.sweep->isStale()) ||
               question.ids.size() >= kMostHits;
    } catch (const StoreError& error) {
        logLine(std::string("Error searching: ") + error.what());
        return true;
    }
}

void DesktopSearch::collect(Question& question) const {
    for (const RowId row : question.sweep->next(kMostHits - question.ids.size(), kSlice)) {
        const auto summary = m_library.listing.summary(row);
        if (summary && !summary->isTrashed) question.ids.push_back(summary->id.toString());
    }
}

void DesktopSearch::answerFirst() {
    const auto question = std::move(m_questions.front());
    m_questions.pop_front();
    question.found(question.ids);
}

std::vector<DesktopSearch::Hit> DesktopSearch::describe(const std::vector<std::string>& ids) const {
    std::vector<Hit> hits;
    try {
        for (std::size_t i = 0; i < std::min(ids.size(), kMostDescribed); ++i) {
            const auto id = Uuid::parse(ids[i]);
            const auto row = id ? m_library.listing.rowOf(*id) : std::nullopt;
            const auto note = row ? m_library.listing.summary(*row) : std::nullopt;
            if (!note || note->isTrashed) continue;
            const auto title = oneLine(note->title);
            hits.push_back(
                {ids[i], title.empty() ? m_texts(texts::untitled) : title, oneLine(note->excerpt)});
        }
    } catch (const StoreError& error) {
        logLine(std::string("Error searching: ") + error.what());
    }
    return hits;
}

std::string DesktopSearch::queryFor(const std::vector<std::string>& terms) const {
    const auto kept = usable(terms);
    std::string query;
    for (const auto& term : kept) {
        if (!query.empty()) query += ' ';
        query += oneLine(term);
    }
    if (kept.size() < 2 || isSomewhere(query)) return query;
    return oneLine(*std::ranges::max_element(kept, {}, &std::string::size));
}

bool DesktopSearch::isSomewhere(const std::string& query) const {
    try {
        return !m_library.searchIndex.search(query)->next(1, kSlice).empty();
    } catch (const StoreError&) {
        return false;
    }
}

}  // namespace corvel
