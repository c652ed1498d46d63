#include "library/ImportWalker.h"

#include "library/AttachmentLinks.h"
#include "library/LibraryManifest.h"
#include "platform/DistantVolumes.h"
#include "platform/Text.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace corvel {

namespace {

constexpr std::size_t kEntriesAtOnce = 256;

bool isMarkdownName(const std::filesystem::path& path) {
    constexpr std::array<std::string_view, 5> kExtensions{".md", ".markdown", ".mdown", ".mkd",
                                                          ".txt"};
    const auto extension = text::lowercased(path.extension().string());
    return std::find(kExtensions.begin(), kExtensions.end(), extension) != kExtensions.end();
}

}  // namespace

ImportWalker::ImportWalker(const std::vector<std::filesystem::path>& paths) {
    for (const auto& path : paths)
        m_pending.push_back({path, {}, {}, Pending::Kind::chosen});
}

void ImportWalker::step(std::vector<ImportReport::Skipped>& skipped) {
    if (m_open) return readEntries(skipped);
    if (m_pending.empty()) return;
    const Pending pending = std::move(m_pending.front());
    m_pending.pop_front();
    look(pending, skipped);
}

ImportWalker::File ImportWalker::take() {
    auto file = std::move(m_files.front());
    m_files.pop_front();
    return file;
}

// What is no directory is left to whoever reads it: only opening tells what it really is.
void ImportWalker::look(const Pending& pending, std::vector<ImportReport::Skipped>& skipped) {
    if (!distantVolumes::answersFor(pending.path)) {
        skipped.push_back({pending.path, ImportFault::noAnswer});
        return;
    }
    struct stat status {};
    const bool isKnown = pending.kind == Pending::Kind::file;
    if (!isKnown && ::stat(pending.path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
        const bool isNew = m_visited.emplace(status.st_dev, status.st_ino).second;
        if (isNew) openDirectory(pending, skipped);
    } else if (pending.kind != Pending::Kind::unknown || isMarkdownName(pending.path)) {
        ++m_found;
        m_files.push_back({pending.path, pending.folder, pending.library});
    }
}

void ImportWalker::openDirectory(const Pending& pending,
                                 std::vector<ImportReport::Skipped>& skipped) {
    std::error_code error;
    std::filesystem::directory_iterator entries(pending.path, error);
    if (error) {
        skipped.push_back({pending.path, ImportFault::unreadable});
        return;
    }
    m_open = std::move(entries);
    m_directory = pending;
    if (pending.kind != Pending::Kind::chosen) return;
    if (std::filesystem::is_regular_file(pending.path / LibraryManifest::kFileName, error)) {
        m_directory.library = pending.path;
        m_libraries.push_back(pending.path);
    }
}

void ImportWalker::readEntries(std::vector<ImportReport::Skipped>& skipped) {
    std::error_code error;
    if (!distantVolumes::answersFor(m_directory.path)) {
        skipped.push_back({m_directory.path, ImportFault::noAnswer});
        m_open = std::filesystem::directory_iterator{};
    }
    for (std::size_t i = 0; i < kEntriesAtOnce; ++i) {
        if (*m_open == std::filesystem::directory_iterator{}) break;
        const auto& entry = **m_open;
        // Not every file system says what an entry is: then it is looked at. So is where a link
        // leads, if that answers.
        const bool isLink = entry.is_symlink(error);
        const bool isSilent = isLink && !distantVolumes::answersFor(entry.path());
        const bool isFile = !isSilent && entry.is_regular_file(error) && !error;
        const auto name = entry.path().filename();
        const bool isAttachments = !m_directory.library.empty() && name == kAttachmentFolder;
        if (!isAttachments && (!isFile || isMarkdownName(entry.path()))) {
            const bool isFolder = !isSilent && !isFile && entry.is_directory(error) && !error;
            m_entries.push_back({entry.path(),
                                 isFolder ? m_directory.folder / name : m_directory.folder,
                                 m_directory.library,
                                 isFile && !isLink ? Pending::Kind::file : Pending::Kind::unknown});
        }
        m_open->increment(error);
        if (error) {
            skipped.push_back({m_directory.path, ImportFault::unreadable});
            m_open = std::filesystem::directory_iterator{};
        }
    }
    if (*m_open != std::filesystem::directory_iterator{}) return;
    m_open.reset();
    // All lie in one directory: whole paths are in the order of names.
    std::sort(m_entries.begin(), m_entries.end(),
              [](const Pending& a, const Pending& b) { return a.path.native() < b.path.native(); });
    m_pending.insert(m_pending.begin(), std::make_move_iterator(m_entries.begin()),
                     std::make_move_iterator(m_entries.end()));
    m_entries.clear();
}

}  // namespace corvel
