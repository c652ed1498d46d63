#include "library/FolderRepository.h"

#include "library/NoteState.h"
#include "library/NoteWriter.h"
#include "library/RowKeys.h"
#include "model/ViewContext.h"

#include <functional>
#include <utility>

namespace corvel {

namespace {

struct StoredFolder {
    std::int64_t key;
    Folder folder;
};

constexpr std::string_view kFolderColumns =
    "SELECT folder.pk, folder.id, folder.name, folder.sortOrder, parent.id, folder.noteCount"
    " FROM folder LEFT JOIN folder AS parent ON parent.pk=folder.parentPk ";

StoredFolder folderFrom(const Query& query) {
    StoredFolder stored{query.integer(0), {}};
    stored.folder.id = query.uuid(1);
    stored.folder.name = query.string(2);
    stored.folder.sortOrder = static_cast<std::int32_t>(query.integer(3));
    if (!query.isNull(4)) stored.folder.parentID = query.uuid(4);
    stored.folder.noteCount = query.integer(5);
    return stored;
}

std::vector<StoredFolder> readFolders(Query query) {
    std::vector<StoredFolder> folders;
    while (query.next()) {
        folders.push_back(folderFrom(query));
    }
    return folders;
}

std::vector<Folder> subtree(Database& database, std::vector<StoredFolder> siblings) {
    static const std::string kChildren =
        std::string(kFolderColumns) +
        "WHERE folder.parentPk=? ORDER BY folder.sortOrder, folder.pk";
    std::vector<Folder> folders;
    for (auto& stored : siblings) {
        auto query = database.query(kChildren);
        query.bind(stored.key);
        stored.folder.children = subtree(database, readFolders(std::move(query)));
        folders.push_back(std::move(stored.folder));
    }
    return folders;
}

std::optional<std::int64_t> folderKey(Database& database, const Uuid& id) {
    auto query = database.query("SELECT pk FROM folder WHERE id=?");
    query.bind(id);
    if (!query.next()) return std::nullopt;
    return query.integer(0);
}

std::vector<RowId> notesUnder(Database& database, std::int64_t folder) {
    auto query = database.query(
        "WITH RECURSIVE sub(pk) AS"
        " (SELECT ? UNION SELECT folder.pk FROM folder JOIN sub ON folder.parentPk=sub.pk)"
        " SELECT DISTINCT notePk FROM noteFolder WHERE folderPk IN (SELECT pk FROM sub)");
    query.bind(folder);
    return keysOf(query);
}

void link(Database& database, RowId row, std::int64_t folder) {
    database.query("INSERT OR IGNORE INTO noteFolder(folderPk, notePk) VALUES(?,?)")
        .bind(folder, row)
        .run();
}

void unlinkAll(Database& database, RowId row) {
    database.query("DELETE FROM noteFolder WHERE notePk=?").bind(row).run();
}

std::int64_t siblingCount(Database& database, const std::optional<std::int64_t>& parent) {
    auto query = database.query("SELECT count(*) FROM folder WHERE parentPk IS ?");
    query.bind(parent);
    return query.next() ? query.integer(0) : 0;
}

void removeFolder(Database& database, std::int64_t folder) {
    std::vector<NoteBookkeeping> bookkeeping;
    for (const RowId row : notesUnder(database, folder)) {
        bookkeeping.emplace_back(database, row);
    }
    database.query("DELETE FROM folder WHERE pk=?").bind(folder).run();
    for (auto& note : bookkeeping) {
        note.finish();
    }
}

}  // namespace

FolderRepository::FolderRepository(ViewContext& context) : m_context(context) {}

std::vector<Folder> FolderRepository::fetchRootFolders() const {
    static const std::string kRoots =
        std::string(kFolderColumns) +
        "WHERE folder.parentPk IS NULL ORDER BY folder.sortOrder, folder.pk";
    Database& database = m_context.database();
    return subtree(database, readFolders(database.query(kRoots)));
}

std::vector<Folder> FolderRepository::fetchAllFolders() const {
    static const std::string kAll = std::string(kFolderColumns) + "ORDER BY folder.name, folder.pk";
    std::vector<Folder> folders;
    for (auto& stored : readFolders(m_context.database().query(kAll))) {
        folders.push_back(std::move(stored.folder));
    }
    return folders;
}

std::optional<Folder> FolderRepository::fetchFolder(const Uuid& id) const {
    static const std::string kOne = std::string(kFolderColumns) + "WHERE folder.id=? LIMIT 1";
    Database& database = m_context.database();
    auto query = database.query(kOne);
    query.bind(id);
    auto folders = subtree(database, readFolders(std::move(query)));
    if (folders.empty()) return std::nullopt;
    return std::move(folders.front());
}

Folder FolderRepository::createFolder(const std::string& name,
                                      const std::optional<Uuid>& parentID,
                                      const Uuid& id) {
    change([id, name, parentID](Database& database) {
        const auto parent = parentID ? folderKey(database, *parentID) : std::nullopt;
        const auto sortOrder = siblingCount(database, parent);
        database.query("INSERT INTO folder(id, name, sortOrder, parentPk) VALUES(?,?,?,?)")
            .bind(id, name, sortOrder, parent)
            .run();
    });
    auto created = fetchFolder(id);
    if (!created) throw StoreError(StoreFault::failed, "the new folder is not in the store");
    return *std::move(created);
}

void FolderRepository::renameFolder(const Uuid& id, const std::string& name) {
    change([id, name](Database& database) {
        database.query("UPDATE folder SET name=? WHERE id=?").bind(name, id).run();
    });
}

void FolderRepository::deleteFolder(const Uuid& id) {
    change([id](Database& database) {
        if (const auto folder = folderKey(database, id)) removeFolder(database, *folder);
    });
}

void FolderRepository::addNoteToFolder(const Uuid& noteID, const Uuid& folderID) {
    changeLinks(noteID, [folderID](Database& database, RowId row) {
        if (const auto folder = folderKey(database, folderID)) link(database, row, *folder);
    });
}

void FolderRepository::removeNoteFromFolder(const Uuid& noteID, const Uuid& folderID) {
    changeLinks(noteID, [folderID](Database& database, RowId row) {
        const auto folder = folderKey(database, folderID);
        if (!folder) return;
        database.query("DELETE FROM noteFolder WHERE folderPk=? AND notePk=?")
            .bind(*folder, row)
            .run();
    });
}

void FolderRepository::removeNoteFromAllFolders(const Uuid& noteID) {
    changeLinks(noteID, unlinkAll);
}

void FolderRepository::moveNoteToFolder(const Uuid& noteID, const Uuid& folderID) {
    changeLinks(noteID, [folderID](Database& database, RowId row) {
        const auto folder = folderKey(database, folderID);
        if (!folder) return;
        unlinkAll(database, row);
        link(database, row, *folder);
    });
}

std::vector<Uuid> FolderRepository::folderIDsOf(const Uuid& noteID) const {
    std::vector<Uuid> ids;
    auto query = m_context.database().query(
        "SELECT folder.id FROM noteFolder JOIN folder ON folder.pk=folderPk"
        " JOIN note ON note.pk=notePk WHERE note.id=?");
    query.bind(noteID);
    while (query.next()) {
        ids.push_back(query.uuid(0));
    }
    return ids;
}

void FolderRepository::change(std::function<void(Database&)> change) {
    ++m_changeCount;
    m_context.apply(std::move(change));
    m_context.save();
}

void FolderRepository::changeLinks(const Uuid& noteID,
                                   std::function<void(Database&, RowId)> change) {
    m_context.apply([noteID, change = std::move(change)](Database& database) {
        const auto row = noteWriter::rowOf(database, noteID);
        if (!row) return;
        NoteBookkeeping bookkeeping(database, *row);
        change(database, *row);
        bookkeeping.finish();
    });
    m_context.save();
}

}  // namespace corvel
