#include "library/NoteListViewModel.h"

#include "library/Library.h"
#include "library/Notifications.h"
#include "model/PersistenceController.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <glibmm/main.h>

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

constexpr std::chrono::milliseconds kSearchSlice{8};
/// More than a window shows.
constexpr std::size_t kFirstRows = 100;

void logFailure(const char* failure, const std::exception& error) {
    logLine(std::string(failure) + " " + text::repaired(error.what()));
}

std::optional<std::size_t> takeOut(std::vector<RowId>& rows, RowId row) {
    const auto found = std::find(rows.begin(), rows.end(), row);
    if (found == rows.end()) return std::nullopt;
    const auto position = static_cast<std::size_t>(found - rows.begin());
    rows.erase(found);
    return position;
}

void putIn(std::vector<RowId>& rows, std::size_t position, RowId row) {
    rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(position), row);
}

std::int64_t countOf(const NoteCounts& counts, SidebarFilter::Kind kind) {
    switch (kind) {
        case SidebarFilter::Kind::unfiled:
            return counts.unfiled;
        case SidebarFilter::Kind::localFiles:
            return counts.localFiles;
        case SidebarFilter::Kind::archived:
            return counts.archived;
        case SidebarFilter::Kind::trash:
            return counts.trash;
        default:
            return counts.allNotes;
    }
}

}  // namespace

NoteListViewModel::NoteListViewModel(Library& library, NotificationCenter& notifications)
    : m_library(library), m_notifications(notifications) {
    m_connections.emplace_back(library.notes.signalChanged().connect(
        sigc::mem_fun(*this, &NoteListViewModel::noteChanged)));
    m_connections.push_back(notifications.observe(notifications::createNewNote,
                                                  [this](const std::any&) { createNote(); }));
    m_connections.push_back(
        notifications.observe(notifications::noteAction, [this](const std::any& payload) {
            if (const auto* action = std::any_cast<NoteAction>(&payload)) perform(*action);
        }));
    m_connections.push_back(notifications.observe(notifications::folderDidChange,
                                                  [this](const std::any&) { reload(); }));
    m_connections.push_back(
        notifications.observe(notifications::openLocalFile, [this](const std::any& payload) {
            if (const auto* path = std::any_cast<std::filesystem::path>(&payload))
                m_localFileOpened.emit(findOrCreateLocalFileNote(*path));
        }));
}

void NoteListViewModel::setFilter(const SidebarFilter& filter) {
    m_filter = filter;
    if (!isSearching()) replace();
}

void NoteListViewModel::setSortOption(SortOption sort) {
    m_sort = sort;
    if (!isSearching()) replace();
}

void NoteListViewModel::setSearchQuery(const std::string& query) {
    if (query == m_query) return;
    m_query = query;
    m_wantedHits = kHitsAtOnce;
    replace();
}

void NoteListViewModel::replace() {
    const std::size_t before = m_rows.size();
    try {
        auto rows = readRows();
        keepAllNotes();
        m_rows = std::move(rows);
        m_rowsFilter = m_filter;
        m_rowsSort = m_sort;
        m_areHits = isSearching();
    } catch (const StoreError& error) {
        logFailure(isSearching() ? "Error searching:" : "Error loading notes:", error);
        return;
    }
    m_spliced.emit({0, before, m_rows.size()});
    m_replaced.emit();
}

void NoteListViewModel::keepAllNotes() {
    if (std::exchange(m_isPart, false) || m_areHits ||
        m_rowsFilter.kind != SidebarFilter::Kind::allNotes || m_rows.empty())
        return;
    m_allNotes = KeptList{m_rowsSort, std::move(m_rows)};
}

void NoteListViewModel::open() {
    if (!canOpenInPart()) {
        reload();
        return;
    }
    try {
        const auto rows = m_library.listing.rows(m_filter, m_sort, kFirstRows);
        m_isPart = rows.size() == kFirstRows;
        show(rows);
    } catch (const StoreError& error) {
        logFailure("Error loading notes:", error);
        return;
    }
    if (!m_isPart) return;
    m_restWork = Glib::signal_idle().connect(
        [this] {
            if (m_isPart) reload();
            return false;
        },
        Glib::PRIORITY_LOW);
}

// The lists that are long, and whose length the store knows.
bool NoteListViewModel::canOpenInPart() const {
    return !isSearching() && m_filter.kind != SidebarFilter::Kind::tag &&
           m_filter.kind != SidebarFilter::Kind::folder;
}

std::size_t NoteListViewModel::noteCount() const {
    if (!m_isPart) return m_rows.size();
    try {
        return static_cast<std::size_t>(countOf(m_library.listing.counts(), m_filter.kind));
    } catch (const StoreError& error) {
        logFailure("Error loading notes:", error);
        return m_rows.size();
    }
}

void NoteListViewModel::reload() {
    m_allNotes.reset();
    try {
        auto rows = readRows();
        m_isPart = false;
        if (isSearching() && m_areHits && !coversShown(rows)) {
            m_foundAnew = std::move(rows);
        } else {
            show(rows);
        }
    } catch (const StoreError& error) {
        logFailure(isSearching() ? "Error searching:" : "Error loading notes:", error);
    }
}

// A change of a note starts the search again; its hits so far stay until the new ones are there.
bool NoteListViewModel::coversShown(const std::vector<RowId>& hits) const {
    return m_sweep->isFinished() || hits.size() >= m_rows.size();
}

std::vector<RowId> NoteListViewModel::readRows() {
    m_foundAnew.reset();
    if (isSearching()) return searchHits();
    m_sweep.reset();
    m_searchWork.disconnect();
    const bool isKept =
        m_allNotes && m_allNotes->sort == m_sort && m_filter.kind == SidebarFilter::Kind::allNotes;
    return isKept ? m_allNotes->rows : m_library.listing.rows(m_filter, m_sort);
}

std::vector<RowId> NoteListViewModel::searchHits() {
    m_sweep = m_library.searchIndex.search(m_query);
    auto hits = m_sweep->next(m_wantedHits, kSearchSlice);
    if (!m_sweep->isFinished() && hits.size() < m_wantedHits) {
        m_searchWork = Glib::signal_idle().connect([this] {
            continueSearch();
            return false;
        });
    }
    return hits;
}

void NoteListViewModel::continueSearch() {
    if (!m_sweep) return;
    if (m_sweep->isStale()) {
        reload();
        return;
    }
    auto& rows = m_foundAnew ? *m_foundAnew : m_rows;
    const std::size_t at = rows.size();
    if (m_sweep->isFinished() || at >= m_wantedHits) return;
    const auto more = m_sweep->next(m_wantedHits - at, kSearchSlice);
    rows.insert(rows.end(), more.begin(), more.end());
    if (!m_foundAnew) {
        if (!more.empty()) m_spliced.emit({at, 0, more.size()});
    } else if (coversShown(*m_foundAnew)) {
        show(*std::exchange(m_foundAnew, std::nullopt));
    }
    if (m_sweep->isFinished()) {
        m_replaced.emit();
    } else if (m_foundAnew || m_rows.size() < m_wantedHits) {
        m_searchWork = Glib::signal_idle().connect([this] {
            continueSearch();
            return false;
        });
    }
}

bool NoteListViewModel::isSearchFinished() const {
    return !m_sweep || m_sweep->isFinished();
}

void NoteListViewModel::showMore() {
    if (!isSearching() || !m_sweep || m_rows.size() < m_wantedHits) return;
    m_wantedHits = m_rows.size() + kHitsAtOnce;
    continueSearch();
}

// What stands the same at both ends stays; only the middle is spliced, so that a list keeps its
// place.
void NoteListViewModel::show(const std::vector<RowId>& rows) {
    const auto [oldStart, newStart] =
        std::mismatch(m_rows.begin(), m_rows.end(), rows.begin(), rows.end());
    const auto prefix = static_cast<std::size_t>(newStart - rows.begin());
    std::size_t suffix = 0;
    while (suffix < std::min(m_rows.size(), rows.size()) - prefix &&
           m_rows[m_rows.size() - 1 - suffix] == rows[rows.size() - 1 - suffix]) {
        ++suffix;
    }
    const ListSplice splice{prefix, m_rows.size() - prefix - suffix, rows.size() - prefix - suffix};
    m_rows = rows;
    if (splice.removed > 0 || splice.added > 0) m_spliced.emit(splice);
    m_rowsChanged.emit();
}

void NoteListViewModel::showDraft(const Uuid& id, const std::string& title) {
    const auto row = m_library.listing.rowOf(id);
    const auto shown = row ? summaryOf(*row) : std::nullopt;
    if (!shown || shown->title == title) return;
    m_draft = Draft{id, title};
    m_rowsChanged.emit();
}

void NoteListViewModel::noteChanged(const NoteChange& change) {
    if (change.note != nullptr && m_draft && m_draft->id == change.id) m_draft.reset();
    if (m_isBatch) return;
    try {
        patchKept(change.row);
    } catch (const StoreError&) {
        m_allNotes.reset();
    }
    try {
        if (isSearching()) takeOutOfHits(change);
        if (isSearching() || m_isPart) return reload();
        patch(change.row);
    } catch (const StoreError& error) {
        logFailure("Error loading notes:", error);
    }
}

// What no search finds any more leaves at once.
void NoteListViewModel::takeOutOfHits(const NoteChange& change) {
    const auto note = summaryOf(change.row);
    if (note && !note->isTrashed) return;
    if (const auto position = takeOut(m_rows, change.row)) m_spliced.emit({*position, 1, 0});
}

void NoteListViewModel::patch(RowId row) {
    const auto before = takeOut(m_rows, row);
    const auto after = placeIn(m_rows, m_filter, m_sort, row);
    const bool staysInPlace = before && before == after;
    if (before && !staysInPlace) m_spliced.emit({*before, 1, 0});
    if (after) putIn(m_rows, *after, row);
    if (after && !staysInPlace) m_spliced.emit({*after, 0, 1});
    m_rowsChanged.emit();
}

void NoteListViewModel::patchKept(RowId row) {
    if (!m_allNotes) return;
    auto& rows = m_allNotes->rows;
    takeOut(rows, row);
    if (const auto place = placeIn(rows, {}, m_allNotes->sort, row)) putIn(rows, *place, row);
}

// Where a note that is not in `rows` belongs; none when the filter does not list it.
std::optional<std::size_t> NoteListViewModel::placeIn(const std::vector<RowId>& rows,
                                                      const SidebarFilter& filter,
                                                      SortOption sort,
                                                      RowId row) const {
    if (!m_library.listing.contains(filter, row)) return std::nullopt;
    return m_library.listing.positionFor(rows, row, sort);
}

std::optional<NoteSummary> NoteListViewModel::summaryAt(std::size_t position) const {
    return position < m_rows.size() ? summaryOf(m_rows[position]) : std::nullopt;
}

std::vector<Uuid> NoteListViewModel::idsAt(const std::vector<std::size_t>& positions) const {
    std::vector<Uuid> ids;
    try {
        const ReadTransaction reading(m_library.controller.viewContext().database());
        for (const auto position : positions) {
            if (position >= m_rows.size()) continue;
            if (const auto id = m_library.listing.idOf(m_rows[position])) ids.push_back(*id);
        }
    } catch (const StoreError& error) {
        logFailure("Error loading notes:", error);
    }
    return ids;
}

std::optional<NoteSummary> NoteListViewModel::summaryOf(RowId row) const {
    try {
        auto summary = m_library.listing.summary(row);
        if (summary && m_draft && m_draft->id == summary->id) summary->title = m_draft->title;
        return summary;
    } catch (const StoreError& error) {
        logFailure("Error loading notes:", error);
        return std::nullopt;
    }
}

std::optional<std::size_t> NoteListViewModel::positionOf(const Uuid& id) const {
    const auto row = m_library.listing.rowOf(id);
    if (!row) return std::nullopt;
    const auto found = std::find(m_rows.begin(), m_rows.end(), *row);
    if (found == m_rows.end()) return std::nullopt;
    return static_cast<std::size_t>(found - m_rows.begin());
}

std::optional<Uuid> NoteListViewModel::createNote() {
    Note note;
    note.id = Uuid::random();
    note.createdAt = Date::now();
    note.modifiedAt = note.createdAt;
    if (m_filter.kind == SidebarFilter::Kind::folder) note.folderIDs = {m_filter.folderID};
    try {
        m_library.notes.create(note);
    } catch (const StoreError& error) {
        logFailure("Error creating note:", error);
        // Where the store keeps it for the next save, it can be written in.
        if (!m_library.listing.rowOf(note.id)) return std::nullopt;
    }
    m_created.emit(note.id);
    return note.id;
}

void NoteListViewModel::perform(const NoteAction& action) {
    switch (action.type) {
        case NoteActionType::togglePin:
            return togglePin({action.noteID});
        case NoteActionType::toggleArchive:
            return toggleArchive({action.noteID});
        case NoteActionType::moveToTrash:
            return moveToTrash({action.noteID});
    }
}

void NoteListViewModel::togglePin(const std::vector<Uuid>& ids) {
    toggleTowards(ids, &NoteSummary::isPinned,
                  "Error toggling pin:", &NoteRepositoryProtocol::togglePin);
}

void NoteListViewModel::toggleArchive(const std::vector<Uuid>& ids) {
    toggleTowards(ids, &NoteSummary::isArchived,
                  "Error toggling archive:", &NoteRepositoryProtocol::toggleArchive);
}

// Several notes get one state: the flag is set on all unless all have it.
void NoteListViewModel::toggleTowards(const std::vector<Uuid>& ids,
                                      bool NoteSummary::*flag,
                                      const char* failure,
                                      void (NoteRepositoryProtocol::*toggle)(const Uuid&)) {
    std::vector<Uuid> unset;
    for (const Uuid& id : ids) {
        const auto row = m_library.listing.rowOf(id);
        const auto summary = row ? summaryOf(*row) : std::nullopt;
        if (summary && !((*summary).*flag)) unset.push_back(id);
    }
    forEach(unset.empty() ? ids : unset, failure,
            [&](const Uuid& id) { (m_library.notes.*toggle)(id); });
}

void NoteListViewModel::moveToTrash(const std::vector<Uuid>& ids) {
    forEach(ids,
            "Error moving to trash:", [&](const Uuid& id) { m_library.notes.moveToTrash(id); });
    m_trashed.emit(ids);
}

void NoteListViewModel::restoreFromTrash(const std::vector<Uuid>& ids) {
    forEach(ids, "Error restoring from trash:", [&](const Uuid& id) {
        m_library.notes.restoreFromTrash(id);
    });
}

void NoteListViewModel::deletePermanently(const std::vector<Uuid>& ids) {
    forEach(ids,
            "Error deleting note:", [&](const Uuid& id) { m_library.notes.deletePermanently(id); });
}

void NoteListViewModel::addToFolder(const std::vector<Uuid>& ids, const Uuid& folderID) {
    forEach(ids, "Error adding note to folder:", [&](const Uuid& id) {
        m_library.folders.addNoteToFolder(id, folderID);
    });
    m_notifications.post(notifications::folderDidChange);
}

void NoteListViewModel::removeFromFolder(const std::vector<Uuid>& ids, const Uuid& folderID) {
    forEach(ids, "Error removing note from folder:", [&](const Uuid& id) {
        m_library.folders.removeNoteFromFolder(id, folderID);
    });
    m_notifications.post(notifications::folderDidChange);
}

void NoteListViewModel::removeFromAllFolders(const std::vector<Uuid>& ids) {
    forEach(ids, "Error removing note from all folders:", [&](const Uuid& id) {
        m_library.folders.removeNoteFromAllFolders(id);
    });
    m_notifications.post(notifications::folderDidChange);
}

LinkOutcome NoteListViewModel::createLocalFileNote(const std::filesystem::path& path) {
    return link("Error creating local file note:",
                [&](LocalFileNotes& files) { return files.create(path).id; });
}

LinkOutcome NoteListViewModel::findOrCreateLocalFileNote(const std::filesystem::path& path) {
    return link("Error creating local file note:", [&](LocalFileNotes& files) {
        const auto known = files.noteFor(path);
        if (!known) return files.create(path).id;
        if (known->isTrashed) m_library.notes.restoreFromTrash(known->id);
        return known->id;
    });
}

void NoteListViewModel::stopTracking(const std::vector<Uuid>& ids) {
    LocalFileNotes files(m_library.notes);
    forEach(ids, "Error stopping tracking of local file:", [&](const Uuid& id) {
        files.stopTracking(id);
    });
}

LinkOutcome NoteListViewModel::upgradeToLocalFile(const Uuid& id,
                                                  const std::filesystem::path& path) {
    return link("Error upgrading note to local file:", [&](LocalFileNotes& files) {
        files.upgrade(id, path);
        return id;
    });
}

LinkOutcome NoteListViewModel::relinkLocalFile(const Uuid& id, const std::filesystem::path& path) {
    return link("Error upgrading note to local file:", [&](LocalFileNotes& files) {
        files.relink(id, path);
        return id;
    });
}

LinkOutcome NoteListViewModel::link(const char* failure,
                                    const std::function<Uuid(LocalFileNotes&)>& operation) {
    LocalFileNotes files(m_library.notes);
    try {
        return {operation(files), {}};
    } catch (const LinkError& error) {
        logFailure(failure, error);
        return {{}, error};
    } catch (const StoreError& error) {
        logFailure(failure, error);
        return {};
    }
}

// Several notes are one commit and one reload.
void NoteListViewModel::forEach(const std::vector<Uuid>& ids,
                                const char* failure,
                                const std::function<void(const Uuid&)>& operation) {
    m_isBatch = ids.size() > 1;
    try {
        ViewContext::Group group(m_library.controller.viewContext());
        for (const Uuid& id : ids) {
            operation(id);
        }
        group.commit();
    } catch (const StoreError& error) {
        logFailure(failure, error);
    }
    if (std::exchange(m_isBatch, false)) reload();
}

}  // namespace corvel
