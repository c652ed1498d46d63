#pragma once

#include "export/ExportFolders.h"
#include "export/LibraryExporter.h"
#include "library/FrontMatter.h"
#include "platform/FileCopy.h"

#include <deque>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>

namespace corvel {

/// Thrown by the writer; `what()` names the file and the system's reason.
class LibraryExportError : public std::runtime_error {
public:
    LibraryExportError(LibraryExportFault fault, const std::string& message)
        : std::runtime_error(message), m_fault(fault) {}
    /// Of the system's error number.
    static LibraryExportError of(int number, const std::filesystem::path& path);
    static LibraryExportError noAnswer(const std::filesystem::path& path);

    LibraryExportFault fault() const { return m_fault; }

private:
    LibraryExportFault m_fault;
};

/// Writes the files of an exported library below a folder that exists. Throws LibraryExportError
/// and StoreError.
class LibraryWriter {
public:
    LibraryWriter(Library& library, std::filesystem::path folder, const std::string& trashName);

    void writeNote(const Note& note);
    /// Copies a piece of an attachment that waits; false when none does.
    bool copySome();
    /// Also makes the folders that no note needed.
    void writeManifest();

    std::size_t noteCount() const { return m_notes; }
    std::size_t attachmentCount() const { return m_attachments; }
    const std::vector<std::string>& missing() const { return m_missing; }

private:
    struct Waiting {
        std::filesystem::path from;
        std::filesystem::path to;
    };

    ExportFolders::Place& placeFor(const Note& note);
    void make(ExportFolders::Place& place);
    void makeAttachmentFolder(ExportFolders::Place& place);
    FrontMatter matterOf(const Note& note) const;
    std::string textWithFiles(const Note& note, ExportFolders::Place& place, FrontMatter& matter);
    void addFile(const AttachmentInfo& info,
                 bool isAnothers,
                 ExportFolders::Place& place,
                 FrontMatter& matter);
    void writeFile(const std::filesystem::path& path,
                   std::initializer_list<std::string_view> parts,
                   std::optional<Date> modifiedAt = {}) const;

    Library& m_library;
    std::filesystem::path m_folder;
    ExportFolders m_folders;
    std::deque<Waiting> m_waiting;
    std::optional<FileCopy> m_copy;
    std::size_t m_notes = 0;
    std::size_t m_attachments = 0;
    std::vector<std::string> m_missing;
};

}  // namespace corvel
