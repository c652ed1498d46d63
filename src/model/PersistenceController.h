#pragma once

#include "model/AttachmentFiles.h"
#include "model/ViewContext.h"
#include "platform/Database.h"

#include <filesystem>
#include <memory>

namespace corvel {

/// The store: one SQLite database with the files of large attachments beside it, its view context,
/// and the lock that keeps a second program away from it.
class PersistenceController {
public:
    enum class Storage { onDisk, inMemory };

    /// The one on-disk controller of the run, created on first use over the default folder.
    static PersistenceController& shared();

    /// Opens or creates the store; one in memory gets the two sample notes. `folder` is where the
    /// store file lies, by default the application-support folder. A store that does not load ends
    /// the program with the message "Core Data store failed to load: " and the reason.
    explicit PersistenceController(Storage storage, std::filesystem::path folder = {});
    ~PersistenceController();

    ViewContext& viewContext() { return *m_context; }
    const AttachmentFiles& attachmentFiles() const { return *m_attachmentFiles; }
    /// The folder that the store file lies in; empty in memory.
    const std::filesystem::path& folder() const { return m_folder; }
    /// The folder beside the store file for words that are not saved yet; empty in memory.
    const std::filesystem::path& draftFolder() const { return m_draftFolder; }
    /// True for the store on disk: the one that a mirroring service would mirror.
    bool iCloudEnabled() const { return m_iCloudEnabled; }

    /// Saves the view context if it has changes. A failure is printed, not passed on.
    void save();

private:
    void open(Storage storage, const std::filesystem::path& folder);
    void openOnDisk(const std::filesystem::path& folder);

    class Lock;
    std::unique_ptr<Lock> m_lock;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<ViewContext> m_context;
    std::unique_ptr<AttachmentFiles> m_attachmentFiles;
    std::filesystem::path m_folder;
    std::filesystem::path m_draftFolder;
    bool m_iCloudEnabled;
};

}  // namespace corvel
