#include "export/LibraryExporter.h"

#include "export/LibraryWriter.h"
#include "library/NoteReader.h"
#include "model/PersistenceController.h"
#include "platform/Database.h"
#include "platform/DistantVolumes.h"
#include "platform/FolderRemoval.h"
#include "platform/Handle.h"
#include "platform/ScopedConnection.h"

#include <gio/gio.h>
#include <glibmm/main.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <utility>

namespace corvel {

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kSlice{8};
constexpr int kRowsAtOnce = 64;

// Of its own, beside what it will be: renaming works on one file system only.
fs::path makePartial(const fs::path& target) {
    constexpr int kMostTries = 100;
    for (int number = 1; number < kMostTries; ++number) {
        fs::path path = target;
        path += number == 1 ? ".partial" : ".partial" + std::to_string(number);
        if (::mkdir(path.c_str(), 0777) == 0) return path;
        if (errno != EEXIST) throw LibraryExportError::of(errno, path);
    }
    throw LibraryExportError::of(EEXIST, target);
}

bool isOccupied(const fs::path& target) {
    std::error_code error;
    const auto status = fs::symlink_status(target, error);
    return fs::exists(status) && !(fs::is_directory(status) && fs::is_empty(target, error));
}

}  // namespace

class LibraryExporter::Job {
public:
    Job(Library& library, fs::path target, Progress progress, Done done)
        : m_library(library)
        , m_target(std::move(target))
        , m_progress(std::move(progress))
        , m_done(std::move(done)) {}

    ~Job() {
        m_idle.disconnect();
        if (m_sync) g_cancellable_cancel(m_sync.get());
        std::error_code ignored;
        if (!m_partial.empty() && distantVolumes::answersFor(m_partial))
            fs::remove_all(m_partial, ignored);
    }
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

    void begin(const std::string& trashName, std::function<void()> finished) {
        m_finished = std::move(finished);
        guarded([&] { prepare(trashName); });
        work();
    }

    void cancel() {
        if (m_report.wasCancelled || m_isAtEnd) return;
        m_report.wasCancelled = true;
        giveUp();
    }

    LibraryExportReport takeReport() { return std::move(m_report); }
    Done takeDone() { return std::move(m_done); }

private:
    void prepare(const std::string& trashName) {
        requireAnswer();
        if (isOccupied(m_target)) throw LibraryExportError::of(EEXIST, m_target);
        {
            auto query =
                m_library.controller.viewContext().database().query("SELECT count(*) FROM note");
            if (query.next()) m_all = static_cast<std::size_t>(query.integer(0));
        }
        m_partial = makePartial(m_target);
        m_writer.emplace(m_library, m_partial, trashName);
    }

    void work() {
        m_idle = Glib::signal_idle().connect([this] { return slice(); });
    }

    // One slice of whatever is to be done; false when no further one is needed.
    bool slice() {
        const auto end = Clock::now() + kSlice;
        if (m_removal) {
            if (distantVolumes::answersFor(m_partial) && m_removal->work(end)) return true;
            m_partial.clear();
            answer();
            return false;
        }
        if (!m_writer) {
            answer();
            return false;
        }
        guarded([&] { writeUntil(end); });
        if (m_removal || !m_isWritten) return true;
        if (m_progress) m_progress(m_all, m_all);
        // Whoever was told may have cancelled; nothing ends the wait for a disk that is gone.
        if (!m_removal) guarded([&] { requireAnswer(); });
        if (m_removal) return true;
        synchronise();
        return false;
    }

    void writeUntil(Clock::time_point end) {
        requireAnswer();
        const ReadTransaction reading(m_library.controller.viewContext().database());
        do {
            if (m_writer->copySome()) continue;
            if (m_nextRow == m_rows.size() && !readRows()) {
                m_writer->writeManifest();
                m_isWritten = true;
                return;
            }
            writeOne(m_rows[m_nextRow++]);
        } while (Clock::now() < end);
        if (m_progress) m_progress(m_writer->noteCount(), m_all);
    }

    bool readRows() {
        auto query = m_library.controller.viewContext().database().query(
            "SELECT pk FROM note WHERE pk>? ORDER BY pk LIMIT ?");
        query.bind(m_rows.empty() ? RowId{0} : m_rows.back(), kRowsAtOnce);
        m_rows.clear();
        m_nextRow = 0;
        while (query.next())
            m_rows.push_back(query.integer(0));
        return !m_rows.empty();
    }

    void writeOne(RowId row) {
        const auto note = noteReader::read(m_library.controller.viewContext().database(), row,
                                           noteReader::Subtags::without);
        if (note) m_writer->writeNote(*note);  // deleted meanwhile
    }

    // Waiting for the disk is left to a process of its own. Without it the files are written all
    // the same, only somewhat later.
    void synchronise() {
        const char* const command[] = {"sync", "-f", m_partial.c_str(), nullptr};
        const GObjectHandle<GSubprocess> process(
            g_subprocess_newv(command, G_SUBPROCESS_FLAGS_STDERR_SILENCE, nullptr));
        if (!process) return complete();
        m_sync.reset(g_cancellable_new());
        g_subprocess_wait_async(
            process.get(), m_sync.get(),
            [](GObject* source, GAsyncResult* result, gpointer data) {
                auto* const waited = G_SUBPROCESS(source);
                // Cancelled: the job may be gone.
                if (g_subprocess_wait_finish(waited, result, nullptr) == FALSE) return;
                static_cast<Job*>(data)->synchronised(g_subprocess_get_successful(waited) != FALSE);
            },
            this);
    }

    // Some disks tell only now that they had no room for all of it.
    void synchronised(bool isOnDisk) {
        m_sync.reset();
        if (isOnDisk) return complete();
        guarded([&] {
            requireAnswer();
            if (::access(m_partial.c_str(), F_OK) != 0)
                throw LibraryExportError::of(errno, m_partial);
        });
        if (m_removal) return;
        fail(LibraryExportFault::failed, m_partial.string() + ": not all of it is on the disk");
    }

    void complete() {
        guarded([&] {
            requireAnswer();
            if (::rename(m_partial.c_str(), m_target.c_str()) != 0)
                throw LibraryExportError::of(errno, m_target);
            m_partial.clear();
            m_report.folder = m_target;
            m_report.notes = m_writer->noteCount();
            m_report.attachments = m_writer->attachmentCount();
            m_report.missingAttachments = m_writer->missing();
            m_isAtEnd = true;
        });
        if (m_isAtEnd) answer();
    }

    void requireAnswer() const {
        if (!distantVolumes::answersFor(m_target)) throw LibraryExportError::noAnswer(m_target);
    }

    template <typename Work>
    void guarded(Work&& step) {
        try {
            step();
        } catch (const LibraryExportError& error) {
            fail(error.fault(), error.what());
        } catch (const StoreError& error) {
            fail(LibraryExportFault::storeFailed, error.what());
        }
    }

    void fail(LibraryExportFault fault, const std::string& detail) {
        m_report.fault = fault;
        m_report.detail = detail;
        giveUp();
    }

    void giveUp() {
        if (m_sync) g_cancellable_cancel(m_sync.get());
        m_sync.reset();
        m_writer.reset();
        if (!m_partial.empty()) m_removal.emplace(m_partial);
        if (!m_idle.connected()) work();
    }

    void answer() {
        m_isAtEnd = true;
        const auto finished = m_finished;  // outlives this job, which it destroys
        finished();
    }

    Library& m_library;
    fs::path m_target;
    fs::path m_partial;
    Progress m_progress;
    Done m_done;
    std::function<void()> m_finished;
    LibraryExportReport m_report;
    std::optional<LibraryWriter> m_writer;
    std::optional<FolderRemoval> m_removal;
    GObjectHandle<GCancellable> m_sync;
    std::vector<RowId> m_rows;
    std::size_t m_nextRow = 0;
    std::size_t m_all = 0;
    bool m_isWritten = false;
    bool m_isAtEnd = false;
    ScopedConnection m_idle;
};

LibraryExporter::LibraryExporter(Library& library) : m_library(library) {}

LibraryExporter::~LibraryExporter() = default;

void LibraryExporter::start(const fs::path& target,
                            const std::string& trashName,
                            Progress progress,
                            Done done) {
    if (m_job) return;
    m_job = std::make_unique<Job>(m_library, target, std::move(progress), std::move(done));
    m_job->begin(trashName, [this] {
        // The answer may start the next export or destroy this exporter.
        const auto report = m_job->takeReport();
        const auto answer = m_job->takeDone();
        m_job.reset();
        if (answer) answer(report);
    });
}

void LibraryExporter::cancel() {
    if (m_job) m_job->cancel();
}

bool LibraryExporter::isRunning() const {
    return m_job != nullptr;
}

}  // namespace corvel
