#pragma once

#include "platform/ScopedConnection.h"
#include "platform/Uuid.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace corvel {

class Library;

/// `unreadable` is also a file too large to be a note (256 MB); `notText` has NUL bytes or is in no
/// known encoding; `notAFile` is a pipe, a device or the like; of `noAnswer` the volume is silent.
enum class ImportFault { unreadable, noAnswer, notText, notAFile, storeFailed };

struct ImportReport {
    struct Skipped {
        std::filesystem::path path;
        ImportFault reason;
    };
    std::size_t imported = 0;
    std::size_t unchanged = 0;  ///< notes of an export that the library still has as they are
    std::vector<Skipped> skipped;
    std::vector<std::filesystem::path>
        missingImages;  ///< referenced, but not found or not readable
    bool wasCancelled = false;
    std::size_t notReached = 0;  ///< files that Cancel left unread
    std::optional<Uuid> lastNoteID;
};

struct ImportOptions {
    /// Sub-folders of a chosen folder become folders of the library; one of the same name at the
    /// same place is used again.
    bool keepFolders = false;
    std::optional<Uuid> intoFolder;  ///< a folder of the library that takes the notes
};

/// Takes Markdown files and whole folders into the library, in slices on the main loop, each file
/// whole or not at all. A folder that is an exported library comes back as it was: folders in their
/// order, states, dates, tags and attachments, with the ids that are free. Destroying the importer
/// cancels what is left.
class MarkdownImporter {
public:
    /// `done` of `found` files; while folders are searched `done` is 0 and `found` grows.
    using Progress = std::function<void(std::size_t done, std::size_t found)>;
    using Done = std::function<void(const ImportReport& report)>;

    explicit MarkdownImporter(Library& library);
    ~MarkdownImporter();

    /// Calls `done` exactly once, on the main loop, never before this function returns. One import
    /// runs at a time: starting another gives up the first without calling its `done`.
    void start(const std::vector<std::filesystem::path>& paths,
               ImportOptions options,
               Progress progress,
               Done done);
    /// Files already imported stay; `done` follows.
    void cancel();
    bool isRunning() const;

private:
    class Job;
    Library& m_library;
    std::unique_ptr<Job> m_job;
};

}  // namespace corvel
