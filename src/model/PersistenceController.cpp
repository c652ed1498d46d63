#include "model/PersistenceController.h"

#include "model/PendingRestore.h"
#include "model/SampleNotes.h"
#include "model/Schema.h"
#include "model/StoreFiles.h"
#include "platform/Log.h"
#include "platform/Paths.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <unordered_set>

namespace corvel {

namespace {

void sweepAttachments(Database& database, const AttachmentFiles& files) {
    std::unordered_set<Uuid> named;
    auto query = database.query("SELECT id FROM attachment WHERE isInFile=1");
    while (query.next()) {
        named.insert(query.uuid(0));
    }
    files.sweep(named);
}

}  // namespace

/// Held while the store is open, so that two programs never write one library at once.
class PersistenceController::Lock {
public:
    explicit Lock(const std::filesystem::path& file)
        : m_descriptor(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
        if (m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
            ::close(m_descriptor);
            throw StoreError(StoreFault::locked, "another qno Corvel is using the library");
        }
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() {
        if (m_descriptor >= 0) ::close(m_descriptor);
    }

private:
    int m_descriptor;
};

PersistenceController& PersistenceController::shared() {
    static PersistenceController controller(Storage::onDisk);
    return controller;
}

PersistenceController::PersistenceController(Storage storage, std::filesystem::path folder)
    : m_iCloudEnabled(storage == Storage::onDisk) {
    if (folder.empty()) folder = paths::applicationSupport();
    try {
        open(storage, folder);
    } catch (const StoreError& error) {
        fatalStop(std::string("Core Data store failed to load: ") + error.what());
    }
}

PersistenceController::~PersistenceController() = default;

void PersistenceController::open(Storage storage, const std::filesystem::path& folder) {
    if (storage == Storage::onDisk) {
        openOnDisk(folder);
    } else {
        m_database = std::make_unique<Database>();
        m_attachmentFiles = std::make_unique<AttachmentFiles>(std::filesystem::path{});
    }
    schema::migrate(*m_database);
    m_context = std::make_unique<ViewContext>(*m_database);
    if (storage == Storage::onDisk) {
        sweepAttachments(*m_database, *m_attachmentFiles);
    } else {
        seedSampleNotes(*m_context);
        save();
    }
}

void PersistenceController::openOnDisk(const std::filesystem::path& folder) {
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    const auto file = folder / storeFiles::kStore;
    m_lock = std::make_unique<Lock>(file.string() + ".lock");
    pendingRestore::finish(folder);
    m_folder = folder;
    m_database = std::make_unique<Database>(file);
    m_attachmentFiles = std::make_unique<AttachmentFiles>(folder / storeFiles::kAttachments);
    m_draftFolder = folder / storeFiles::kDrafts;
}

void PersistenceController::save() {
    try {
        m_context->save();
    } catch (const StoreError& error) {
        logLine(std::string("Core Data save error: ") + error.what());
    }
}

}  // namespace corvel
