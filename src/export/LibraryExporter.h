#pragma once

#include "library/Library.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// `occupied`: something is at the place already; `gone`: the place vanished, as a drive pulled out
/// does; `noAnswer`: its volume is silent; `storeFailed`: the library could not be read.
enum class LibraryExportFault {
    occupied,
    gone,
    noAnswer,
    diskFull,
    notWritable,
    storeFailed,
    failed
};

struct LibraryExportReport {
    std::filesystem::path folder;  ///< the finished export
    std::size_t notes = 0;
    std::size_t attachments = 0;
    std::vector<std::string> missingAttachments;  ///< names of those without data
    bool wasCancelled = false;
    std::optional<LibraryExportFault> fault;
    std::string detail;  ///< of the fault, for the log and for people who can read it
};

/// Writes every note as a Markdown file with its attachments beside, in folders that mirror the
/// folders; docs/library-export.md tells how. Works in slices on the main loop and never holds more
/// than one note. The folder has its name only when it is complete and on the disk: before, it lies
/// beside under another, and after a failure or a cancel it is removed, unless its volume no longer
/// answers. Destroying the exporter cancels.
class LibraryExporter {
public:
    using Progress = std::function<void(std::size_t done, std::size_t all)>;
    using Done = std::function<void(const LibraryExportReport& report)>;

    explicit LibraryExporter(Library& library);  // must outlive the exporter
    ~LibraryExporter();

    /// Makes `target`, which must not exist or be an empty folder. `trashName` is what the folder
    /// of trashed notes is called. Calls `done` exactly once, on the main loop, never before this
    /// function returns. Does nothing while an export runs.
    void start(const std::filesystem::path& target,
               const std::string& trashName,
               Progress progress,
               Done done);
    /// `done` follows when what was written is removed.
    void cancel();
    bool isRunning() const;

private:
    class Job;
    Library& m_library;
    std::unique_ptr<Job> m_job;
};

}  // namespace corvel
