#include "library/CountChanges.h"

namespace corvel {

namespace {

bool isUnfiled(const NoteState& state) {
    return state.isListed() && state.folders.empty();
}

bool isLocalFile(const NoteState& state) {
    return state.isListed() && state.hasBookmark;
}

bool isInArchive(const NoteState& state) {
    return state.exists && state.isArchived && !state.isTrashed;
}

bool countsTheSame(const NoteState& one, const NoteState& other) {
    return one.exists == other.exists && one.isArchived == other.isArchived &&
           one.isTrashed == other.isTrashed && one.hasBookmark == other.hasBookmark &&
           one.folders == other.folders && one.textTags == other.textTags;
}

void writeSums(Database& database,
               std::string_view sql,
               const std::map<std::int64_t, std::int64_t>& sums) {
    for (const auto& [key, sum] : sums) {
        if (sum != 0) database.query(sql).bind(sum, key).run();
    }
}

}  // namespace

void CountChanges::add(const NoteState& before, const NoteState& after) {
    if (countsTheSame(before, after)) return;
    count("allNotes", before.isListed(), after.isListed());
    count("unfiled", isUnfiled(before), isUnfiled(after));
    count("localFiles", isLocalFile(before), isLocalFile(after));
    count("archived", isInArchive(before), isInArchive(after));
    count("trash", before.exists && before.isTrashed, after.exists && after.isTrashed);
    for (const auto* state : {&before, &after}) {
        if (!state->isListed()) continue;
        const int amount = state == &before ? -1 : 1;
        for (const auto key : state->folders)
            m_folders[key] += amount;
        for (const auto key : state->textTags)
            m_tags[key] += amount;
    }
}

void CountChanges::count(const char* counter, bool before, bool after) {
    if (before != after) m_counters[counter] += after ? 1 : -1;
}

void CountChanges::write(Database& database) {
    for (const auto& [name, sum] : m_counters) {
        if (sum == 0) continue;
        database
            .query(
                "INSERT INTO counter(name, value) VALUES(?,?)"
                " ON CONFLICT(name) DO UPDATE SET value=value+excluded.value")
            .bind(name, sum)
            .run();
    }
    writeSums(database, "UPDATE folder SET noteCount=noteCount+? WHERE pk=?", m_folders);
    writeSums(database, "UPDATE tag SET listedCount=listedCount+? WHERE pk=?", m_tags);
    *this = {};
}

}  // namespace corvel
