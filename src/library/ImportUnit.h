#pragma once

#include "library/FrontMatter.h"
#include "library/MarkdownImporter.h"
#include "library/NoteWriter.h"
#include "model/Attachment.h"
#include "model/Note.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace corvel {

/// One file made ready for the store: its note and the images that the text shows, which are stored
/// together or not at all.
struct ImportUnit : noteWriter::PreparedNote {
    std::filesystem::path path;
    std::vector<Attachment> attachments;
    std::vector<std::filesystem::path> missingImages;
    /// The file tells the note's id and state.
    bool isFromLibrary = false;
    /// Paths of folders in the exported library that the file comes from, when it tells them.
    std::optional<std::vector<std::string>> folders;
    /// Files beside that are taken in by what the file tells, not by the images of its text.
    std::vector<std::filesystem::path> listed;
    /// Attachments of other notes that the text shows: taken in if those do not come.
    std::vector<FrontMatter::File> borrowed;

    /// What the text calls `from` becomes `to`, and so does the attachment.
    void renameAttachment(const Uuid& from, const Uuid& to);

    /// Bytes of the text and of what it takes along.
    std::size_t size() const;

    static std::variant<ImportUnit, ImportFault> read(const std::filesystem::path& path);
};

/// The attachment that a file of an exported library names beside it; none when it does not lie
/// below the Markdown file's folder, or cannot be read.
std::optional<Attachment> readListedFile(const std::filesystem::path& markdown,
                                         const FrontMatter::File& file);

}  // namespace corvel
