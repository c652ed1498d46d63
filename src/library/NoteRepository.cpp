#include "library/NoteRepository.h"

#include "library/NoteListing.h"
#include "library/NoteReader.h"
#include "library/NoteWriter.h"
#include "library/RowKeys.h"
#include "model/PersistenceController.h"
#include "platform/Text.h"

#include <exception>
#include <utility>

namespace corvel {

namespace {

std::optional<Note> readFirst(Database& database, std::string_view sql, const auto& parameter) {
    std::optional<RowId> row;
    {
        auto query = database.query(sql);
        query.bind(parameter);
        if (query.next()) row = query.integer(0);
    }
    return row ? noteReader::read(database, *row) : std::nullopt;
}

std::vector<Uuid> attachmentsInFiles(Database& database, const Uuid& noteID) {
    std::vector<Uuid> ids;
    auto query = database.query(
        "SELECT attachment.id FROM attachment JOIN note ON note.pk=notePk"
        " WHERE note.id=? AND isInFile=1");
    query.bind(noteID);
    while (query.next()) {
        ids.push_back(query.uuid(0));
    }
    return ids;
}

// Of the notes outside the trash, newest modification first.
std::vector<RowId> rowsByDate(Database& database) {
    auto query =
        database.query("SELECT pk FROM note WHERE isTrashed=0 ORDER BY modifiedAt DESC, pk");
    return keysOf(query);
}

bool holds(Database& database, RowId row, const std::string& folded) {
    auto query =
        database.query("SELECT title, content FROM note JOIN noteContent ON notePk=pk WHERE pk=?");
    query.bind(row);
    return query.next() &&
           (text::foldedForSearch(query.text(0)).find(folded) != std::string::npos ||
            text::foldedForSearch(query.text(1)).find(folded) != std::string::npos);
}

ViewContext::Change insertion(const Note& note) {
    return [note, derived = DerivedText::of(note.content)](Database& database) {
        noteWriter::insert(database, note, derived);
    };
}

}  // namespace

NoteRepository::NoteRepository(PersistenceController& controller)
    : m_controller(controller), m_context(controller.viewContext()) {}

std::vector<Note> NoteRepository::fetchNotes(const SidebarFilter& filter, SortOption sort) const {
    std::vector<Note> notes;
    for (const RowId row : NoteListing(m_context).rows(filter, sort)) {
        if (auto note = noteReader::read(m_context.database(), row))
            notes.push_back(*std::move(note));
    }
    return notes;
}

std::optional<Note> NoteRepository::fetchNote(const Uuid& id) const {
    return readFirst(m_context.database(), "SELECT pk FROM note WHERE id=? LIMIT 1", id);
}

std::optional<Note> NoteRepository::fetchNoteBySourceFile(const std::string& sourceFilePath) const {
    return readFirst(
        m_context.database(),
        "SELECT pk FROM note WHERE sourceFilePath=? AND sourceFilePath IS NOT NULL LIMIT 1",
        sourceFilePath);
}

std::vector<LinkedNote> NoteRepository::fetchLinkedNotes() const {
    std::vector<LinkedNote> notes;
    auto query = m_context.database().query(
        "SELECT id, title, sourceFilePath, bookmarkData, isTrashed FROM note"
        " WHERE sourceFilePath IS NOT NULL");
    while (query.next()) {
        notes.push_back(
            {query.uuid(0), query.string(1), query.string(2), query.blob(3), query.boolean(4)});
    }
    return notes;
}

std::vector<Note> NoteRepository::search(std::string_view query) const {
    const std::string wanted = text::foldedForSearch(query);
    std::vector<Note> notes;
    for (const RowId row : rowsByDate(m_context.database())) {
        if (!holds(m_context.database(), row, wanted)) continue;
        if (auto note = noteReader::read(m_context.database(), row))
            notes.push_back(*std::move(note));
    }
    return notes;
}

void NoteRepository::create(const Note& note) {
    applyAndSave(insertion(note), {}, NoteChange::Kind::created, note.id, &note);
}

void NoteRepository::createOrRefuse(const Note& note) {
    {
        ViewContext::Batch creation(m_context);
        creation.apply([&] {
            m_context.apply(insertion(note));
            m_context.save();
        });
    }
    if (const auto row = noteWriter::rowOf(m_context.database(), note.id))
        m_changed.emit({NoteChange::Kind::created, *row, note.id, &note});
}

void NoteRepository::createUnsaved(const Note& note) {
    m_context.apply(insertion(note));
}

void NoteRepository::createUnsaved(
    std::vector<std::shared_ptr<const noteWriter::PreparedNote>> notes) {
    m_context.apply(
        [notes = std::move(notes)](Database& database) { noteWriter::insert(database, notes); });
}

void NoteRepository::update(const Note& note) {
    auto change = [note, derived = DerivedText::of(note.content)](Database& database) {
        noteWriter::update(database, note, derived);
    };
    applyAndSave(std::move(change), "update " + note.id.toString(), NoteChange::Kind::updated,
                 note.id, &note);
}

void NoteRepository::renewLink(const Uuid& id,
                               const std::string& path,
                               const std::vector<std::uint8_t>& bookmarkData) {
    const auto note = fetchNote(id);
    if (!note || !note->bookmarkData) return;
    auto change = [id, path, bookmarkData](Database& database) {
        database
            .query(
                "UPDATE note SET sourceFilePath=?, bookmarkData=?"
                " WHERE id=? AND bookmarkData IS NOT NULL")
            .bind(path, bookmarkData, id)
            .run();
    };
    if (path != note->sourceFilePath) {
        return applyAndSave(std::move(change), {}, NoteChange::Kind::marked, id, nullptr);
    }
    m_context.apply(std::move(change), "link " + id.toString());
    m_context.save();
}

void NoteRepository::togglePin(const Uuid& id) {
    changeState(id, NoteChange::Kind::marked, [](Database& database, RowId row) {
        noteWriter::updateState(database, row,
                                "UPDATE note SET isPinned=NOT isPinned, syncStatus=1 WHERE pk=?");
    });
}

void NoteRepository::toggleArchive(const Uuid& id) {
    changeState(id, NoteChange::Kind::marked, [](Database& database, RowId row) {
        noteWriter::updateState(
            database, row, "UPDATE note SET isArchived=NOT isArchived, syncStatus=1 WHERE pk=?");
    });
}

void NoteRepository::moveToTrash(const Uuid& id) {
    changeState(id, NoteChange::Kind::trashed, [now = Date::now()](Database& database, RowId row) {
        noteWriter::moveToTrash(database, row, now);
    });
}

void NoteRepository::restoreFromTrash(const Uuid& id) {
    changeState(id, NoteChange::Kind::restored, [](Database& database, RowId row) {
        noteWriter::updateState(
            database, row, "UPDATE note SET isTrashed=0, trashedAt=NULL, syncStatus=1 WHERE pk=?");
    });
}

void NoteRepository::deletePermanently(const Uuid& id) {
    const auto files = attachmentsInFiles(m_context.database(), id);
    auto change = [id](Database& database) {
        if (const auto row = noteWriter::rowOf(database, id)) noteWriter::remove(database, *row);
    };
    applyAndSave(change, {}, NoteChange::Kind::deleted, id, nullptr);
    // In a group the row may still come back; the next start sweeps what no row names.
    if (m_context.hasChanges()) return;
    for (const Uuid& file : files) {
        m_controller.attachmentFiles().remove(file);
    }
}

void NoteRepository::changeState(const Uuid& id, NoteChange::Kind kind, RowChange change) {
    auto applied = [id, change = std::move(change)](Database& database) {
        if (const auto row = noteWriter::rowOf(database, id)) change(database, *row);
    };
    applyAndSave(std::move(applied), {}, kind, id, nullptr);
}

void NoteRepository::applyAndSave(ViewContext::Change change,
                                  std::string key,
                                  NoteChange::Kind kind,
                                  const Uuid& id,
                                  const Note* note) {
    // Only a note that goes is asked for before: inside the transaction a question takes no locks.
    std::optional<RowId> row;
    if (kind == NoteChange::Kind::deleted) row = noteWriter::rowOf(m_context.database(), id);
    std::exception_ptr failure;
    try {
        m_context.apply(std::move(change), std::move(key));
        if (!row) row = noteWriter::rowOf(m_context.database(), id);
        m_context.save();
    } catch (const StoreError&) {
        failure = std::current_exception();
    }
    const bool isTaken = !failure || m_context.hasChanges();
    if (!row) row = noteWriter::rowOf(m_context.database(), id);
    if (isTaken && row) m_changed.emit({kind, *row, id, note});
    if (failure) std::rethrow_exception(failure);
}

}  // namespace corvel
