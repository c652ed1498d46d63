#include "library/MarkdownImporter.h"

#include "library/ImportBatch.h"
#include "library/ImportFolders.h"
#include "library/ImportUnit.h"
#include "library/ImportWalker.h"
#include "library/Library.h"
#include "model/PersistenceController.h"
#include "platform/Checkpoints.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <glibmm/main.h>

#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace corvel {

namespace {

using Clock = std::chrono::steady_clock;

// A slice reads files for so long, or it puts what earlier ones have read into the store, or saves
// that, or tells of it, or empties the store's log.
constexpr auto kSlice = std::chrono::milliseconds(8);
constexpr std::size_t kMostBytesRead = 1024 * 1024;
constexpr std::size_t kMostNotesRead = 240;

}  // namespace

class MarkdownImporter::Job {
public:
    Job(Library& library,
        const std::vector<std::filesystem::path>& paths,
        ImportOptions options,
        Progress progress,
        Done done)
        : m_library(library)
        , m_walker(paths)
        , m_folders(library, options)
        , m_progress(std::move(progress))
        , m_done(std::move(done))
        , m_checkpoints(library.controller.viewContext().database())
        , m_batch(library) {}

    void begin(const std::function<void()>& finished) {
        m_idle = Glib::signal_idle().connect([this, finished] {
            if (slice()) return true;
            const auto answer = finished;  // outlives this job, which it destroys
            answer();
            return false;
        });
    }

    void cancel() { m_report.wasCancelled = true; }
    Done takeDone() { return std::move(m_done); }
    ImportReport takeReport() { return std::move(m_report); }

private:
    struct Read {
        std::shared_ptr<ImportUnit> unit;
        std::vector<ImportFolders::Place> places;
    };
    struct Borrowed {
        Uuid noteID;
        std::filesystem::path path;  // of the Markdown file
        FrontMatter::File file;
    };

    // False when all is done.
    bool slice() {
        if (m_report.wasCancelled && !windUp()) return false;
        if (!m_report.wasCancelled && !advance()) return false;
        if (m_progress) m_progress(storedOrSkipped(), m_walker.foundCount());
        return true;
    }

    bool advance() {
        const bool isAllAdded = m_walker.isEmpty() && m_read.empty();
        if (!m_walker.hasFoundAll()) {
            find();
        } else if (m_batch.hasSaved()) {
            tellOfSaved();
        } else if (m_checkpoints.isDue()) {
            m_checkpoints.run();
        } else if (m_folders.isBusy()) {
            makeFolders();
        } else if (m_batch.refusedCount() > 0) {
            retry();
        } else if (m_batch.isFull() || (isAllAdded && m_batch.hasUnsaved())) {
            m_batch.save();
        } else if (!m_walker.isEmpty() && !isMuchRead()) {
            read();
        } else if (!m_read.empty()) {
            storeRead();
        } else if (!m_borrowed.empty()) {
            takeBorrowed();
        } else {
            return false;
        }
        return true;
    }

    // After a cancel: what is in the store stays, what was only read is left.
    bool windUp() {
        if (m_batch.hasUnsaved()) {
            m_batch.save();
        } else if (m_batch.hasSaved()) {
            tellOfSaved();
        } else {
            m_report.notReached = m_walker.foundCount() - storedOrSkipped();
            return false;
        }
        return true;
    }

    std::size_t storedOrSkipped() const {
        return m_takenCount - m_read.size() - m_batch.refusedCount();
    }

    void find() {
        const auto deadline = Clock::now() + kSlice;
        do {
            m_walker.step(m_report.skipped);
            m_folders.begin(m_walker.libraries());
        } while (!m_walker.hasFoundAll() && Clock::now() < deadline);
    }

    bool isMuchRead() const {
        return m_bytesRead >= kMostBytesRead || m_read.size() >= kMostNotesRead;
    }

    void read() {
        const auto deadline = Clock::now() + kSlice;
        do {
            readOne(m_walker.take());
        } while (!m_walker.isEmpty() && !isMuchRead() && Clock::now() < deadline);
    }

    void readOne(const ImportWalker::File& file) {
        ++m_takenCount;
        auto read = ImportUnit::read(file.path);
        if (const auto* fault = std::get_if<ImportFault>(&read)) {
            m_report.skipped.push_back({file.path, *fault});
            return;
        }
        auto unit = std::make_shared<ImportUnit>(std::get<ImportUnit>(std::move(read)));
        if (!isWanted(*unit)) return;
        m_bytesRead += unit->size();
        m_read.push_back({unit, m_folders.want({file.library, file.folder}, unit->folders)});
    }

    void makeFolders() {
        try {
            m_folders.work(Clock::now() + kSlice);
        } catch (const StoreError& error) {
            // The notes are placed by where they lie, or fail themselves.
            logLine(std::string("Error creating folder: ") + error.what());
        }
    }

    bool isWanted(ImportUnit& unit) {
        try {
            return !unit.isFromLibrary || hasOwnIDs(unit);
        } catch (const StoreError& error) {
            fail(unit, error);
            return false;
        }
    }

    void storeRead() {
        std::vector<ImportBatch::Unit> units;
        for (const auto& [unit, places] : std::exchange(m_read, {})) {
            try {
                unit->note.folderIDs = m_folders.foldersAt(places);
                units.push_back(unit);
            } catch (const StoreError& error) {
                fail(*unit, error);
            }
        }
        m_bytesRead = 0;
        if (!units.empty()) m_batch.add(std::move(units));
    }

    // What a file says its ids are holds if they are free. False for a note that is there already.
    bool hasOwnIDs(ImportUnit& unit) {
        const bool isNew = m_noteIDs.insert(unit.note.id).second;
        if (const auto there = m_library.notes.fetchNote(unit.note.id)) {
            if (there->title == unit.note.title && there->content == unit.note.content) {
                ++m_report.unchanged;
                return false;
            }
            unit.note.id = Uuid::random();
        } else if (!isNew) {
            unit.note.id = Uuid::random();
        }
        for (const auto& attachment : std::vector(unit.attachments)) {
            const bool isFree = m_attachmentIDs.insert(attachment.id).second &&
                                !m_library.attachments.fetchInfo(attachment.id);
            if (!isFree) unit.renameAttachment(attachment.id, Uuid::random());
        }
        return true;
    }

    void retry() {
        const auto refusal = m_batch.retry();
        if (refusal) fail(*refusal->unit, refusal->reason);
    }

    void tellOfSaved() {
        const auto deadline = Clock::now() + kSlice;
        const ReadTransaction reading(m_library.controller.viewContext().database());
        do {
            stored(*m_batch.takeSaved());
        } while (m_batch.hasSaved() && Clock::now() < deadline);
    }

    // Of notes that did not come themselves.
    void takeBorrowed() {
        const auto [noteID, path, file] = std::move(m_borrowed.back());
        m_borrowed.pop_back();
        try {
            if (m_library.attachments.fetchInfo(file.id)) return;
            if (const auto attachment = readListedFile(path, file)) {
                m_library.attachments.create(*attachment, noteID);
            } else {
                tellMissing(path.parent_path() / file.path);
            }
        } catch (const StoreError& error) {
            logLine(std::string("Error importing image: ") + error.what());
        }
    }

    void stored(const ImportUnit& unit) {
        for (const auto& file : unit.borrowed)
            m_borrowed.push_back({unit.note.id, unit.path, file});
        ++m_report.imported;
        const bool isListed = !unit.note.isTrashed && !unit.note.isArchived;
        if (isListed) m_report.lastNoteID = unit.note.id;
        for (const auto& image : unit.missingImages)
            tellMissing(image);
        const auto row = m_library.listing.rowOf(unit.note.id);
        if (row && !unit.note.isTrashed) {
            m_library.searchIndex.noteChanged(*row, unit.note.title, unit.note.content,
                                              unit.note.modifiedAt);
        }
    }

    void tellMissing(const std::filesystem::path& image) {
        if (!m_missing.insert(image).second) return;
        m_report.missingImages.push_back(image);
        logLine("Error importing image " + text::repaired(image.string()));
    }

    void fail(const ImportUnit& unit, const StoreError& error) {
        logLine(std::string("Error importing note: ") + error.what());
        m_report.skipped.push_back({unit.path, ImportFault::storeFailed});
    }

    Library& m_library;
    ImportWalker m_walker;
    ImportFolders m_folders;
    Progress m_progress;
    Done m_done;
    ImportReport m_report;
    Checkpoints m_checkpoints;
    std::vector<Read> m_read;
    std::size_t m_bytesRead = 0;
    ImportBatch m_batch;
    std::vector<Borrowed> m_borrowed;
    std::set<std::filesystem::path> m_missing;
    std::unordered_set<Uuid> m_noteIDs;
    std::unordered_set<Uuid> m_attachmentIDs;
    std::size_t m_takenCount = 0;
    ScopedConnection m_idle;
};

MarkdownImporter::MarkdownImporter(Library& library) : m_library(library) {}

MarkdownImporter::~MarkdownImporter() = default;

void MarkdownImporter::start(const std::vector<std::filesystem::path>& paths,
                             ImportOptions options,
                             Progress progress,
                             Done done) {
    m_job = std::make_unique<Job>(m_library, paths, options, std::move(progress), std::move(done));
    m_job->begin([this] {
        // The answer may start the next import or destroy this importer.
        const auto report = m_job->takeReport();
        const auto answer = m_job->takeDone();
        m_job.reset();
        if (answer) answer(report);
    });
}

void MarkdownImporter::cancel() {
    if (m_job) m_job->cancel();
}

bool MarkdownImporter::isRunning() const {
    return m_job != nullptr;
}

}  // namespace corvel
