#pragma once

#include "library/LocalFileNotes.h"
#include "library/NoteAction.h"
#include "library/NoteListing.h"
#include "library/NoteRepository.h"
#include "library/SearchIndex.h"
#include "library/SidebarFilter.h"
#include "library/SortOption.h"
#include "platform/NotificationCenter.h"

#include <sigc++/signal.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

class Library;

/// A change of the list: at `position`, `removed` rows went and `added` came.
struct ListSplice {
    std::size_t position;
    std::size_t removed;
    std::size_t added;
};

/// What became of linking a note with a file: the note, or why not. Neither when the store refused.
struct LinkOutcome {
    std::optional<Uuid> noteID;
    std::optional<LinkError> refusal;
};

/// The notes of the selected filter in the chosen order, or the hits of a search. Holds row ids
/// alone; a row's record is read when it is shown. Failures of the store are printed as one line
/// and leave the list as it was.
class NoteListViewModel {
public:
    NoteListViewModel(Library& library, NotificationCenter& notifications);

    // What is listed.
    const SidebarFilter& filter() const { return m_filter; }
    void setFilter(const SidebarFilter& filter);
    SortOption sortOption() const { return m_sort; }
    void setSortOption(SortOption sort);
    /// With a query the list shows its hits; an empty one brings the filter's list back.
    void setSearchQuery(const std::string& query);
    const std::string& searchQuery() const { return m_query; }
    bool isSearching() const { return !m_query.empty(); }

    /// How many rows there are now; fewer than `noteCount` right after `open`.
    std::size_t size() const { return m_rows.size(); }
    /// How many notes are listed.
    std::size_t noteCount() const;
    RowId rowAt(std::size_t position) const { return m_rows[position]; }
    /// None when the note has gone meanwhile.
    std::optional<NoteSummary> summaryAt(std::size_t position) const;
    std::optional<NoteSummary> summaryOf(RowId row) const;
    /// Notes that have gone meanwhile are left out.
    std::vector<Uuid> idsAt(const std::vector<std::size_t>& positions) const;
    std::optional<std::size_t> positionOf(const Uuid& id) const;
    /// Reads the first rows at once, the others when the main loop has nothing else to do.
    void open();
    void reload();
    /// Shows `title` for a note whose edits are not saved yet; saving it ends that.
    void showDraft(const Uuid& id, const std::string& title);
    /// False while a search still looks through the library: an empty list is then no answer yet.
    bool isSearchFinished() const;
    /// Asks a search for more hits when the reader nears the end of those shown.
    void showMore();

    // What can be done with notes; each reloads what changed and posts `folderDidChange` where
    // counts may.
    /// Stores an empty note, in the selected folder when there is one; emits `signalCreated`.
    std::optional<Uuid> createNote();
    void perform(const NoteAction& action);
    void togglePin(const std::vector<Uuid>& ids);
    void toggleArchive(const std::vector<Uuid>& ids);
    void moveToTrash(const std::vector<Uuid>& ids);
    void restoreFromTrash(const std::vector<Uuid>& ids);
    void deletePermanently(const std::vector<Uuid>& ids);
    void addToFolder(const std::vector<Uuid>& ids, const Uuid& folderID);
    void removeFromFolder(const std::vector<Uuid>& ids, const Uuid& folderID);
    void removeFromAllFolders(const std::vector<Uuid>& ids);

    // Notes that mirror files; paths are absolute. Failures are printed, too.
    /// Links the file with a new note; refused when a note has it.
    LinkOutcome createLocalFileNote(const std::filesystem::path& path);
    /// The note that has the file, out of the trash if it is there, or a new one.
    LinkOutcome findOrCreateLocalFileNote(const std::filesystem::path& path);
    /// The notes stay, and so do the files.
    void stopTracking(const std::vector<Uuid>& ids);
    /// Writes the note to the file and links them.
    LinkOutcome upgradeToLocalFile(const Uuid& id, const std::filesystem::path& path);
    /// Links the note with a file that need not hold its text.
    LinkOutcome relinkLocalFile(const Uuid& id, const std::filesystem::path& path);

    sigc::signal<void(const ListSplice&)>& signalSpliced() { return m_spliced; }
    /// Rows may show something else now, at the same places.
    sigc::signal<void()>& signalRowsChanged() { return m_rowsChanged; }
    /// Filter, order or query changed: the list is another one and starts at its top.
    sigc::signal<void()>& signalReplaced() { return m_replaced; }
    sigc::signal<void(const Uuid&)>& signalCreated() { return m_created; }
    /// A file was to be opened by the notification `openLocalFile`.
    sigc::signal<void(const LinkOutcome&)>& signalLocalFileOpened() { return m_localFileOpened; }
    /// Notes went to the trash: what a toast with undo is for.
    sigc::signal<void(const std::vector<Uuid>&)>& signalTrashed() { return m_trashed; }

private:
    static constexpr std::size_t kHitsAtOnce = 200;

    /// The list of all notes while another is shown: by far the longest to read, kept in step
    /// instead.
    struct KeptList {
        SortOption sort;
        std::vector<RowId> rows;
    };

    void replace();
    bool canOpenInPart() const;
    void keepAllNotes();
    std::optional<std::size_t> placeIn(const std::vector<RowId>& rows,
                                       const SidebarFilter& filter,
                                       SortOption sort,
                                       RowId row) const;
    void patchKept(RowId row);
    std::vector<RowId> readRows();
    std::vector<RowId> searchHits();
    bool coversShown(const std::vector<RowId>& hits) const;
    void takeOutOfHits(const NoteChange& change);
    void continueSearch();
    void show(const std::vector<RowId>& rows);
    void noteChanged(const NoteChange& change);
    void patch(RowId row);
    void toggleTowards(const std::vector<Uuid>& ids,
                       bool NoteSummary::*flag,
                       const char* failure,
                       void (NoteRepositoryProtocol::*toggle)(const Uuid&));
    void forEach(const std::vector<Uuid>& ids,
                 const char* failure,
                 const std::function<void(const Uuid&)>& operation);
    LinkOutcome link(const char* failure, const std::function<Uuid(LocalFileNotes&)>& operation);

    Library& m_library;
    NotificationCenter& m_notifications;
    SidebarFilter m_filter;
    SortOption m_sort = SortOption::modifiedDate;
    std::string m_query;
    std::unique_ptr<SearchIndex::Sweep> m_sweep;
    std::size_t m_wantedHits = kHitsAtOnce;
    /// Hits of a search that was begun anew, until they are as many as those that are shown.
    std::optional<std::vector<RowId>> m_foundAnew;
    ScopedConnection m_searchWork;
    std::vector<RowId> m_rows;
    SidebarFilter m_rowsFilter;  // what m_rows are, when they are no search's hits
    SortOption m_rowsSort = SortOption::modifiedDate;
    bool m_areHits = false;
    bool m_isPart = false;  ///< m_rows are only the first ones
    ScopedConnection m_restWork;
    std::optional<KeptList> m_allNotes;
    struct Draft {
        Uuid id;
        std::string title;
    };
    std::optional<Draft> m_draft;
    bool m_isBatch = false;
    std::vector<ScopedConnection> m_connections;
    sigc::signal<void(const ListSplice&)> m_spliced;
    sigc::signal<void()> m_rowsChanged;
    sigc::signal<void()> m_replaced;
    sigc::signal<void(const Uuid&)> m_created;
    sigc::signal<void(const LinkOutcome&)> m_localFileOpened;
    sigc::signal<void(const std::vector<Uuid>&)> m_trashed;
};

}  // namespace corvel
