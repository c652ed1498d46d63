#include "library/BackupFolder.h"

#include "model/StoreFiles.h"
#include "platform/FileDescriptor.h"
#include "platform/RegularFile.h"
#include "platform/StoreError.h"

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <map>

namespace corvel {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;

constexpr const char* kInfoFile = "backup.json";
constexpr const char* kUnfinished = ".partial";
constexpr const char* kOld = ".old";
constexpr std::size_t kLargestInfo = 64 * 1024;
constexpr std::array<const char*, 3> kKinds{"daily", "byHand", "beforeRestore"};

[[noreturn]] void fail(int code, const fs::path& path) {
    const auto fault = code == ENOSPC || code == EDQUOT                   ? StoreFault::diskFull
                       : code == EROFS || code == EACCES || code == EPERM ? StoreFault::readOnly
                                                                          : StoreFault::failed;
    throw StoreError(fault, path.string() + ": " + std::strerror(code));
}

void syncFolder(const fs::path& folder) {
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.isOpen()) ::fsync(descriptor.get());
}

std::string written(const BackupInfo& info) {
    const Json json = {{"kind", kKinds.at(static_cast<std::size_t>(info.kind))},
                       {"day", info.day},
                       {"made", info.madeAt.microseconds},
                       {"number", info.number},
                       {"notes", info.notes},
                       {"bytes", info.bytes}};
    return json.dump(2) + "\n";
}

std::optional<BackupInfo> read(const fs::path& folder) {
    const auto bytes = readRegularFile(folder / kInfoFile, kLargestInfo);
    std::error_code error;
    if (!bytes || !fs::is_regular_file(folder / storeFiles::kStore, error)) return std::nullopt;
    BackupInfo info;
    try {
        const auto json = Json::parse(*bytes);
        const auto kind =
            std::find(kKinds.begin(), kKinds.end(), json.at("kind").get<std::string>());
        if (kind == kKinds.end()) return std::nullopt;
        info.kind = static_cast<BackupKind>(kind - kKinds.begin());
        info.day = json.at("day").get<std::string>();
        info.madeAt = {json.at("made").get<std::int64_t>()};
        info.number = json.at("number").get<std::uint64_t>();
        info.notes = json.at("notes").get<std::size_t>();
        info.bytes = json.at("bytes").get<std::uintmax_t>();
    } catch (const Json::exception&) {
        return std::nullopt;
    }
    info.folder = folder;
    return info;
}

bool endsWith(const fs::path& path, const char* ending) {
    return path.native().ends_with(ending);
}

}  // namespace

fs::path BackupInfo::store() const {
    return folder / storeFiles::kStore;
}

fs::path BackupInfo::attachments() const {
    return folder / storeFiles::kAttachments;
}

BackupFolder::BackupFolder(const fs::path& library) : m_path(library / storeFiles::kBackups) {}

std::vector<BackupInfo> BackupFolder::list() const {
    std::vector<BackupInfo> backups;
    std::error_code error;
    for (fs::directory_iterator entry(m_path, error), end; !error && entry != end;
         entry.increment(error)) {
        if (endsWith(entry->path(), kUnfinished) || endsWith(entry->path(), kOld)) continue;
        if (auto info = read(entry->path())) backups.push_back(*std::move(info));
    }
    std::sort(backups.begin(), backups.end(),
              [](const auto& a, const auto& b) { return a.number > b.number; });
    return backups;
}

bool BackupFolder::isDue(const std::string& day) const {
    const auto backups = list();
    const auto newest = std::find_if(backups.begin(), backups.end(), [](const auto& backup) {
        return backup.kind == BackupKind::daily;
    });
    return newest == backups.end() || newest->day != day;
}

fs::path BackupFolder::beginNew() const {
    std::error_code ignored;
    if (::mkdir(m_path.c_str(), 0700) != 0 && errno != EEXIST) fail(errno, m_path);
    auto begun = m_path / (std::string("new") + kUnfinished);
    fs::remove_all(begun, ignored);
    if (::mkdir(begun.c_str(), 0700) != 0) fail(errno, begun);
    return begun;
}

BackupInfo BackupFolder::complete(const fs::path& begun, BackupInfo info) const {
    const auto backups = list();
    info.number = backups.empty() ? 1 : backups.front().number + 1;
    if (!replaceFile(begun / kInfoFile, written(info))) fail(errno, begun / kInfoFile);
    syncFolder(begun);
    info.folder = freeName(info.day);
    if (::rename(begun.c_str(), info.folder.c_str()) != 0) fail(errno, info.folder);
    syncFolder(m_path);
    return info;
}

fs::path BackupFolder::freeName(const std::string& day) const {
    std::error_code ignored;
    auto path = m_path / day;
    for (int number = 2; fs::exists(fs::symlink_status(path, ignored)); ++number)
        path = m_path / (day + "-" + std::to_string(number));
    return path;
}

std::vector<fs::path> BackupFolder::takeOutOld() const {
    auto old = leftOld();
    std::map<BackupKind, std::size_t> counts;
    std::error_code error;
    for (const auto& backup : list()) {
        if (++counts[backup.kind] <= kKept) continue;
        fs::path path = backup.folder;
        path += kOld;
        fs::rename(backup.folder, path, error);
        if (!error) old.push_back(path);
    }
    return old;
}

// What a program that was killed had begun to remove.
std::vector<fs::path> BackupFolder::leftOld() const {
    std::vector<fs::path> left;
    std::error_code error;
    for (fs::directory_iterator entry(m_path, error), end; !error && entry != end;
         entry.increment(error)) {
        if (endsWith(entry->path(), kOld)) left.push_back(entry->path());
    }
    return left;
}

}  // namespace corvel
