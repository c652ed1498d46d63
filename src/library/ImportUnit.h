#pragma once

#include "library/MarkdownImporter.h"
#include "library/NoteWriter.h"
#include "model/Attachment.h"
#include "model/Note.h"

#include <filesystem>
#include <variant>
#include <vector>

namespace corvel {

/// One file made ready for the store: its note and the images that the text shows, which are stored
/// together or not at all.
struct ImportUnit {
    std::filesystem::path path;
    Note note;
    DerivedText derived;
    std::vector<Attachment> attachments;
    std::vector<std::filesystem::path> missingImages;

    static std::variant<ImportUnit, ImportFault> read(const std::filesystem::path& path);
};

}  // namespace corvel
