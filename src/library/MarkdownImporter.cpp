#include "library/MarkdownImporter.h"

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
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace corvel {

namespace {

using Clock = std::chrono::steady_clock;

// A slice gathers files for so long, or it stores what earlier ones have gathered (a commit writes
// the same pages of the indexes for few notes as for many), or it empties the store's log.
constexpr auto kGathering = std::chrono::milliseconds(8);
constexpr std::size_t kMostBytesAtOnce = 512 * 1024;
constexpr std::size_t kMostNotesAtOnce = 80;

std::size_t sizeOf(const ImportUnit& unit) {
    std::size_t size = unit.note.content.size();
    for (const auto& attachment : unit.attachments)
        size += attachment.data.size();
    return size;
}

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
        , m_checkpoints(library.controller.viewContext().database()) {}

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
    struct Borrowed {
        Uuid noteID;
        std::filesystem::path path;  // of the Markdown file
        FrontMatter::File file;
    };

    // False when all is done.
    bool slice() {
        if (m_report.wasCancelled) {
            m_report.notReached = m_walker.foundCount() - storedOrSkipped();
            return false;
        }
        if (!m_walker.hasFoundAll()) {
            find();
        } else if (m_checkpoints.isDue()) {
            m_checkpoints.run();
        } else if (m_folders.isBusy()) {
            makeFolders();
        } else if (!m_walker.isEmpty() && !isBatchFull()) {
            gather();
        } else if (!m_batch.empty()) {
            storeBatch();
        } else if (!m_borrowed.empty()) {
            takeBorrowed();
        } else {
            return false;
        }
        if (m_progress) m_progress(storedOrSkipped(), m_walker.foundCount());
        return true;
    }

    std::size_t storedOrSkipped() const { return m_takenCount - m_batch.size(); }

    void find() {
        const auto deadline = Clock::now() + kGathering;
        do {
            m_walker.step(m_report.skipped);
            m_folders.begin(m_walker.libraries());
        } while (!m_walker.hasFoundAll() && Clock::now() < deadline);
    }

    bool isBatchFull() const {
        return m_batchBytes >= kMostBytesAtOnce || m_batch.size() >= kMostNotesAtOnce;
    }

    void gather() {
        const auto deadline = Clock::now() + kGathering;
        do {
            const auto file = m_walker.take();
            ++m_takenCount;
            auto unit = ImportUnit::read(file.path);
            if (const auto* fault = std::get_if<ImportFault>(&unit)) {
                m_report.skipped.push_back({file.path, *fault});
            } else if (placed(std::get<ImportUnit>(unit), file)) {
                m_batchBytes += sizeOf(std::get<ImportUnit>(unit));
                m_batch.push_back(std::get<ImportUnit>(std::move(unit)));
            }
        } while (!m_walker.isEmpty() && !isBatchFull() && Clock::now() < deadline);
    }

    void makeFolders() {
        try {
            m_folders.work(Clock::now() + kGathering);
        } catch (const StoreError& error) {
            // The notes are placed by where they lie, or fail themselves.
            logLine(std::string("Error creating folder: ") + error.what());
        }
    }

    bool placed(ImportUnit& unit, const ImportWalker::File& file) {
        try {
            if (unit.isFromLibrary && !hasOwnIDs(unit)) return false;
            unit.note.folderIDs = m_folders.foldersOf(file.library, file.folder, unit.folders);
            return true;
        } catch (const StoreError& error) {
            fail(unit, error);
            return false;
        }
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

    // All as one; when that fails each file alone, so that one bad file spoils no other.
    void storeBatch() {
        const auto batch = std::exchange(m_batch, {});
        m_batchBytes = 0;
        if (batch.empty() || (batch.size() > 1 && store(batch.data(), batch.size(), nullptr)))
            return;
        for (const auto& unit : batch) {
            std::string reason;
            if (!store(&unit, 1, &reason)) fail(unit, StoreError(StoreFault::failed, reason));
        }
    }

    bool store(const ImportUnit* units, std::size_t count, std::string* reason) {
        ViewContext::Group group(m_library.controller.viewContext());
        try {
            std::vector<noteWriter::PreparedNote> notes;
            for (std::size_t i = 0; i < count; ++i) {
                notes.push_back({units[i].note, units[i].derived});
            }
            m_library.notes.createUnsaved(std::move(notes));
            for (std::size_t i = 0; i < count; ++i) {
                for (const auto& attachment : units[i].attachments) {
                    m_library.attachments.createUnsaved(attachment, units[i].note.id);
                }
            }
            group.commit();
        } catch (const StoreError& error) {
            if (reason != nullptr) *reason = error.what();
            takeBack(group, units, count);
            return false;
        }
        for (std::size_t i = 0; i < count; ++i)
            stored(units[i]);
        return true;
    }

    void takeBack(ViewContext::Group& group, const ImportUnit* units, std::size_t count) {
        group.rollBack();
        for (std::size_t i = 0; i < count; ++i) {
            for (const auto& attachment : units[i].attachments) {
                m_library.controller.attachmentFiles().remove(attachment.id);
            }
        }
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
                m_report.missingImages.push_back(path.parent_path() / file.path);
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
        m_report.missingImages.insert(m_report.missingImages.end(), unit.missingImages.begin(),
                                      unit.missingImages.end());
        for (const auto& image : unit.missingImages) {
            logLine("Error importing image " + text::repaired(image.string()));
        }
        const auto row = m_library.listing.rowOf(unit.note.id);
        if (row && !unit.note.isTrashed) {
            m_library.searchIndex.noteChanged(*row, unit.note.title, unit.note.content,
                                              unit.note.modifiedAt);
        }
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
    std::vector<ImportUnit> m_batch;
    std::size_t m_batchBytes = 0;
    std::vector<Borrowed> m_borrowed;
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
