#pragma once

#include "library/NoteSummary.h"
#include "platform/Database.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvel::tagRows {

// Rows of tag and noteTag. A row of noteTag says that the tag is attached to the note, stands in
// its text, or both; a tag that only stands in text and was never attached is no tag object
// (`isObject` 0).

/// The key of the tag object with this path, made with its ancestors where missing.
std::int64_t findOrCreateTag(Database& database, const std::string& fullPath);

/// A tag of a note.
struct NoteTag {
    std::int64_t key = 0;
    std::string path;
    bool isAttached = false;
    bool isInText = false;
};

/// Ascending by key.
std::vector<NoteTag> tagsOf(Database& database, RowId note);

/// Makes the note's tag set, which is `tags`, exactly the tags in its text. Gives their keys,
/// ascending.
std::vector<std::int64_t> replace(Database& database,
                                  RowId note,
                                  const std::vector<NoteTag>& tags,
                                  const std::vector<std::string>& textPaths);

enum class Source { text, elsewhere };

/// The keys of tag objects that were asked for before, for as long as no tag can go.
class TagKeys {
public:
    explicit TagKeys(Database& database) : m_database(database) {}
    /// As findOrCreateTag.
    std::int64_t keyOf(const std::string& fullPath);

private:
    Database& m_database;
    std::unordered_map<std::string, std::int64_t> m_known;
};

/// Attaches further tags to the note. Gives their keys.
std::vector<std::int64_t> attach(Database& database,
                                 RowId note,
                                 const std::vector<std::string>& paths,
                                 Source source,
                                 TagKeys& keys);

/// Marks which tags stand in the note's text and attaches none.
void markInText(Database& database, RowId note, const std::vector<std::string>& textPaths);

}  // namespace corvel::tagRows
