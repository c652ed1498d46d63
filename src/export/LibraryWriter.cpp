#include "export/LibraryWriter.h"

#include "library/AttachmentLinks.h"
#include "library/IsoDate.h"
#include "model/PersistenceController.h"
#include "platform/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unordered_map>
#include <unordered_set>

namespace corvel {

namespace fs = std::filesystem;

namespace {

constexpr const char* kMarkdown = ".md";
constexpr std::size_t kCopyAtOnce = std::size_t{512} * 1024;
constexpr mode_t kFileMode = 0666;
constexpr mode_t kFolderMode = 0777;

void writeAll(int file, std::string_view bytes, const fs::path& path) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) throw LibraryExportError::of(errno, path);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void setTime(int file, Date date) {
    constexpr std::int64_t kMicroseconds = 1'000'000;
    const auto part = ((date.microseconds % kMicroseconds) + kMicroseconds) % kMicroseconds;
    timespec time{};
    time.tv_sec = (date.microseconds - part) / kMicroseconds;
    time.tv_nsec = part * 1000;
    const std::array<timespec, 2> times{time, time};
    ::futimens(file, times.data());  // that a file system cannot is no harm
}

void makeFolder(const fs::path& path) {
    if (::mkdir(path.c_str(), kFolderMode) != 0) throw LibraryExportError::of(errno, path);
}

// A text that the importer reads back as it is: not taken for another encoding, nor for no text.
std::string readable(const std::string& text) {
    const bool isFine = text::isValidUtf8(text) && text.find('\0') == std::string::npos;
    return isFine ? text : text::repaired(text);
}

}  // namespace

LibraryExportError LibraryExportError::of(int number, const fs::path& path) {
    using Fault = LibraryExportFault;
    auto fault = Fault::failed;
    if (number == ENOSPC || number == EDQUOT) fault = Fault::diskFull;
    if (number == EROFS || number == EACCES || number == EPERM) fault = Fault::notWritable;
    if (number == ENOENT || number == EIO || number == ENODEV || number == ENXIO)
        fault = Fault::gone;
    if (number == ENOTEMPTY || number == EEXIST || number == ENOTDIR) fault = Fault::occupied;
    return {fault, text::repaired(path.string()) + ": " + std::strerror(number)};
}

LibraryExportError LibraryExportError::noAnswer(const fs::path& path) {
    return {LibraryExportFault::noAnswer,
            text::repaired(path.string()) + ": its volume does not answer"};
}

LibraryWriter::LibraryWriter(Library& library, fs::path folder, const std::string& trashName)
    : m_library(library), m_folder(std::move(folder)), m_folders(trashName) {
    m_folders.add(library.folders.fetchRootFolders());
}

void LibraryWriter::writeNote(const Note& note) {
    auto& place = placeFor(note);
    make(place);
    FrontMatter matter = matterOf(note);
    const auto text = textWithFiles(note, place, matter);
    const auto name = place.files.next(note.title, kMarkdown);
    writeFile(m_folder / place.path / name, {matter.block(), text}, note.modifiedAt);
    ++m_notes;
}

ExportFolders::Place& LibraryWriter::placeFor(const Note& note) {
    const auto isUnknown = [this](const Uuid& id) { return !m_folders.knows(id); };
    // Made since the export began.
    if (std::any_of(note.folderIDs.begin(), note.folderIDs.end(), isUnknown))
        m_folders.add(m_library.folders.fetchRootFolders());
    if (note.isTrashed) return m_folders.trash();
    const auto first = m_folders.firstOf(note.folderIDs);
    return first ? m_folders.place(*first) : m_folders.root();
}

// The folders above may have been needed by no note yet.
void LibraryWriter::make(ExportFolders::Place& place) {
    if (place.isMade) return;
    std::error_code error;
    fs::create_directories(m_folder / place.path, error);
    if (error) throw LibraryExportError::of(error.value(), m_folder / place.path);
    place.isMade = true;
}

void LibraryWriter::makeAttachmentFolder(ExportFolders::Place& place) {
    if (place.hasAttachments) return;
    makeFolder(m_folder / place.path / kAttachmentFolder);
    place.hasAttachments = true;
}

FrontMatter LibraryWriter::matterOf(const Note& note) const {
    FrontMatter matter;
    matter.id = note.id;
    matter.title = readable(note.title);
    matter.createdAt = note.createdAt;
    matter.modifiedAt = note.modifiedAt;
    matter.isPinned = note.isPinned;
    matter.isArchived = note.isArchived;
    matter.isTrashed = note.isTrashed;
    matter.trashedAt = note.trashedAt;
    matter.source = note.sourceFilePath;
    for (const auto& tag : note.tags)
        matter.tags.push_back(tag.fullPath);
    std::sort(matter.tags.begin(), matter.tags.end());
    // The one folder that the file lies in goes without saying.
    if (note.isTrashed || note.folderIDs.size() > 1)
        matter.folders = m_folders.pathsOf(note.folderIDs);
    return matter;
}

std::string LibraryWriter::textWithFiles(const Note& note,
                                         ExportFolders::Place& place,
                                         FrontMatter& matter) {
    std::unordered_set<Uuid> own;
    for (const auto& info : m_library.attachments.fetchInfos(note.id)) {
        own.insert(info.id);
        addFile(info, false, place, matter);
    }
    auto text = readable(note.content);
    for (const auto& id : attachmentsNamedIn(text)) {
        if (own.contains(id)) continue;
        if (const auto info = m_library.attachments.fetchInfo(id))
            addFile(*info, true, place, matter);
    }
    if (matter.attachments.empty()) return text;
    std::unordered_map<Uuid, std::string> files;
    std::unordered_map<std::string, Uuid> back;
    for (const auto& file : matter.attachments) {
        const auto address = fileAddress(file.path);
        files.emplace(file.id, address);
        back.emplace(address, file.id);
    }
    auto linked = withFileAddresses(text, files);
    if (withAttachmentAddresses(linked, back) == text) return linked;
    // The text has an address like that itself: better unlinked than changed when it comes back.
    for (auto& file : matter.attachments)
        file.isLinked = false;
    return text;
}

void LibraryWriter::addFile(const AttachmentInfo& info,
                            bool isAnothers,
                            ExportFolders::Place& place,
                            FrontMatter& matter) {
    const auto& store = m_library.controller.attachmentFiles();
    std::error_code error;
    const auto stored = info.isInFile ? store.pathOf(info.id) : fs::path();
    if (info.isInFile && !fs::is_regular_file(stored, error)) {
        m_missing.push_back(info.filename);
        return;
    }
    const fs::path given = text::repaired(info.filename);
    const auto name = place.attachments.next(given.stem().string(), given.extension().string());
    makeAttachmentFolder(place);
    const auto to = m_folder / place.path / kAttachmentFolder / name;
    if (info.isInFile) {
        m_waiting.push_back({stored, to});
    } else {
        const auto attachment = m_library.attachments.fetchAttachment(info.id);
        if (!attachment) return;
        const auto& data = attachment->data;
        writeFile(to, {{reinterpret_cast<const char*>(data.data()), data.size()}});
    }
    ++m_attachments;
    matter.attachments.push_back({info.id, std::string(kAttachmentFolder) + "/" + name,
                                  name == info.filename ? std::string() : given.string(),
                                  info.mimeType, true, isAnothers});
}

bool LibraryWriter::copySome() {
    if (!m_copy) {
        if (m_waiting.empty()) return false;
        m_copy.emplace(m_waiting.front().from, m_waiting.front().to);
    }
    if (m_copy->step(kCopyAtOnce)) return true;
    const auto& [from, to] = m_waiting.front();
    if (m_copy->isSourceBad()) {
        m_missing.push_back(to.filename().string());
    } else if (m_copy->error() != 0) {
        throw LibraryExportError::of(m_copy->error(), to);
    }
    m_copy.reset();
    m_waiting.pop_front();
    return true;
}

void LibraryWriter::writeManifest() {
    m_folders.add(m_library.folders.fetchRootFolders());
    for (const auto& entry : m_folders.entries())
        make(m_folders.place(entry.id));
    LibraryManifest manifest;
    manifest.exportedAt = isoDate(Date::now()).value_or("");
    manifest.noteCount = m_notes;
    manifest.folders = m_folders.entries();
    manifest.trashPath = m_folders.trash().path;
    writeFile(m_folder / LibraryManifest::kFileName, {manifest.json()});
}

void LibraryWriter::writeFile(const fs::path& path,
                              std::initializer_list<std::string_view> parts,
                              std::optional<Date> modifiedAt) const {
    const FileDescriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode));
    if (!file.isOpen()) throw LibraryExportError::of(errno, path);
    for (const auto part : parts)
        writeAll(file.get(), part, path);
    if (modifiedAt) setTime(file.get(), *modifiedAt);
}

}  // namespace corvel
