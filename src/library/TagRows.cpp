#include "library/TagRows.h"

#include <algorithm>
#include <optional>

namespace corvel::tagRows {

namespace {

enum class Kind { object, textOnly };

std::optional<std::int64_t> findTag(Database& database, const std::string& fullPath, Kind kind) {
    std::optional<std::int64_t> key;
    bool isObject = false;
    {
        auto query = database.query("SELECT pk, isObject FROM tag WHERE fullPath=?");
        query.bind(fullPath);
        if (!query.next()) return std::nullopt;
        key = query.integer(0);
        isObject = query.boolean(1);
    }
    if (kind == Kind::object && !isObject) {
        database.query("UPDATE tag SET isObject=1 WHERE pk=?").bind(*key).run();
    }
    return key;
}

std::int64_t findOrCreate(Database& database, const std::string& fullPath, Kind kind) {
    if (const auto found = findTag(database, fullPath, kind)) return *found;
    const auto slash = fullPath.rfind('/');
    std::optional<std::int64_t> parent;
    if (slash != std::string::npos)
        parent = findOrCreate(database, fullPath.substr(0, slash), kind);
    const auto name = slash == std::string::npos ? fullPath : fullPath.substr(slash + 1);
    database.query("INSERT INTO tag(id, name, fullPath, parentPk, isObject) VALUES(?,?,?,?,?)")
        .bind(Uuid::random(), name, fullPath, parent, kind == Kind::object)
        .run();
    return database.lastInsertedRow();
}

}  // namespace

std::vector<NoteTag> tagsOf(Database& database, RowId note) {
    std::vector<NoteTag> tags;
    auto query = database.query(
        "SELECT tagPk, fullPath, isAttached, isInText FROM noteTag JOIN tag ON tag.pk=tagPk"
        " WHERE notePk=? ORDER BY tagPk");
    query.bind(note);
    while (query.next()) {
        tags.push_back({query.integer(0), query.string(1), query.boolean(2), query.boolean(3)});
    }
    return tags;
}

std::int64_t findOrCreateTag(Database& database, const std::string& fullPath) {
    return findOrCreate(database, fullPath, Kind::object);
}

std::vector<std::int64_t> replace(Database& database,
                                  RowId note,
                                  const std::vector<NoteTag>& tags,
                                  const std::vector<std::string>& textPaths) {
    // What stands already as it should is left alone: an edit seldom changes a tag.
    std::vector<std::string> missing = textPaths;
    std::vector<std::int64_t> kept;
    for (const auto& tag : tags) {
        const auto found = std::find(missing.begin(), missing.end(), tag.path);
        if (tag.isAttached && tag.isInText && found != missing.end()) {
            missing.erase(found);
            kept.push_back(tag.key);
        } else {
            database.query("DELETE FROM noteTag WHERE tagPk=? AND notePk=?")
                .bind(tag.key, note)
                .run();
        }
    }
    TagKeys keys(database);
    const auto added = attach(database, note, missing, Source::text, keys);
    kept.insert(kept.end(), added.begin(), added.end());
    std::sort(kept.begin(), kept.end());
    return kept;
}

std::int64_t TagKeys::keyOf(const std::string& fullPath) {
    const auto known = m_known.find(fullPath);
    if (known != m_known.end()) return known->second;
    const auto key = findOrCreateTag(m_database, fullPath);
    m_known.emplace(fullPath, key);
    return key;
}

std::vector<std::int64_t> attach(Database& database,
                                 RowId note,
                                 const std::vector<std::string>& paths,
                                 Source source,
                                 TagKeys& keys) {
    std::vector<std::int64_t> attached;
    for (const auto& path : paths) {
        attached.push_back(keys.keyOf(path));
        database
            .query(
                "INSERT INTO noteTag(tagPk, notePk, isAttached, isInText) VALUES(?,?,1,?)"
                " ON CONFLICT(tagPk, notePk) DO UPDATE SET isAttached=1, "
                "isInText=isInText|excluded.isInText")
            .bind(attached.back(), note, source == Source::text)
            .run();
    }
    return attached;
}

void markInText(Database& database, RowId note, const std::vector<std::string>& textPaths) {
    for (const auto& path : textPaths) {
        database
            .query(
                "INSERT INTO noteTag(tagPk, notePk, isAttached, isInText) VALUES(?,?,0,1)"
                " ON CONFLICT(tagPk, notePk) DO UPDATE SET isInText=1")
            .bind(findOrCreate(database, path, Kind::textOnly), note)
            .run();
    }
}

}  // namespace corvel::tagRows
