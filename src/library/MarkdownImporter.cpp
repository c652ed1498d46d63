#include "library/MarkdownImporter.h"

#include "library/ImportUnit.h"
#include "library/ImportWalker.h"
#include "library/Library.h"
#include "model/PersistenceController.h"
#include "platform/Checkpoints.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <glibmm/main.h>

#include <chrono>
#include <map>
#include <string>
#include <utility>

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

const Folder* childNamed(const std::vector<Folder>& folders, const std::string& name) {
    for (const auto& folder : folders) {
        if (folder.name == name) return &folder;
    }
    return nullptr;
}

const Folder* folderWithID(const std::vector<Folder>& folders, const Uuid& id) {
    for (const auto& folder : folders) {
        if (folder.id == id) return &folder;
        if (const auto* found = folderWithID(folder.children, id)) return found;
    }
    return nullptr;
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
        , m_options(options)
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
    // False when all is done.
    bool slice() {
        if (m_report.wasCancelled) return false;
        const bool isFinished = m_walker.isFinished();
        if (isFinished && m_batch.empty()) return false;
        if (m_checkpoints.isDue()) {
            m_checkpoints.run();
        } else if (isFinished || isBatchFull()) {
            storeBatch();
        } else {
            gather();
        }
        if (m_progress) m_progress(m_doneCount - m_batch.size(), m_walker.foundCount());
        return true;
    }

    bool isBatchFull() const {
        return m_batchBytes >= kMostBytesAtOnce || m_batch.size() >= kMostNotesAtOnce;
    }

    void gather() {
        const auto deadline = Clock::now() + kGathering;
        do {
            const auto file = m_walker.step(m_report.skipped);
            if (!file) continue;
            ++m_doneCount;
            auto unit = ImportUnit::read(file->path);
            if (const auto* fault = std::get_if<ImportFault>(&unit)) {
                m_report.skipped.push_back({file->path, *fault});
            } else if (placed(std::get<ImportUnit>(unit), file->folder)) {
                m_batchBytes += sizeOf(std::get<ImportUnit>(unit));
                m_batch.push_back(std::get<ImportUnit>(std::move(unit)));
            }
        } while (!m_walker.isFinished() && !isBatchFull() && Clock::now() < deadline);
    }

    bool placed(ImportUnit& unit, const std::filesystem::path& folder) {
        try {
            const auto id = m_options.keepFolders ? folderFor(folder) : m_options.intoFolder;
            if (id) unit.note.folderIDs = {*id};
            return true;
        } catch (const StoreError& error) {
            fail(unit, error);
            return false;
        }
    }

    std::optional<Uuid> folderFor(const std::filesystem::path& folder) {
        if (folder.empty()) return m_options.intoFolder;
        if (const auto known = m_folders.find(folder); known != m_folders.end())
            return known->second;
        const auto parent = folderFor(folder.parent_path());
        const auto roots = m_library.folders.fetchRootFolders();
        const auto* parentFolder = parent ? folderWithID(roots, *parent) : nullptr;
        const auto name = text::repaired(folder.filename().string());
        const auto* existing =
            childNamed(parentFolder != nullptr ? parentFolder->children : roots, name);
        const Uuid id =
            existing != nullptr ? existing->id : m_library.folders.createFolder(name, parent).id;
        m_folders.emplace(folder, id);
        return id;
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

    void stored(const ImportUnit& unit) {
        ++m_report.imported;
        m_report.lastNoteID = unit.note.id;
        m_report.missingImages.insert(m_report.missingImages.end(), unit.missingImages.begin(),
                                      unit.missingImages.end());
        for (const auto& image : unit.missingImages) {
            logLine("Error importing image " + text::repaired(image.string()));
        }
        if (const auto row = m_library.listing.rowOf(unit.note.id)) {
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
    ImportOptions m_options;
    Progress m_progress;
    Done m_done;
    ImportReport m_report;
    Checkpoints m_checkpoints;
    std::vector<ImportUnit> m_batch;
    std::size_t m_batchBytes = 0;
    std::map<std::filesystem::path, Uuid> m_folders;
    std::size_t m_doneCount = 0;
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
