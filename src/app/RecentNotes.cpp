#include "app/RecentNotes.h"

#include <sstream>
#include <string>

namespace corvel {

namespace {

constexpr const char* kKey = "recentNotes";

}  // namespace

RecentNotes::RecentNotes(const UserDefaults& defaults) {
    std::istringstream words(defaults.string(kKey).value_or(""));
    for (std::string word; words >> word && m_ids.size() < kMost;) {
        if (const auto id = Uuid::parse(word)) m_ids.push_back(*id);
    }
}

void RecentNotes::opened(const Uuid& id) {
    std::erase(m_ids, id);
    m_ids.insert(m_ids.begin(), id);
    if (m_ids.size() > kMost) m_ids.pop_back();
}

void RecentNotes::remember(UserDefaults& defaults) const {
    std::string words;
    for (const Uuid& id : m_ids) {
        if (!words.empty()) words += ' ';
        words += id.toString();
    }
    defaults.setString(kKey, words);
}

}  // namespace corvel
