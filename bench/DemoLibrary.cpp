#include "library/Library.h"
#include "library/NoteText.h"
#include "model/PersistenceController.h"

#include <glibmm/init.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

using namespace corvel;

std::vector<std::filesystem::path> entriesOf(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> entries;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        entries.push_back(entry.path());
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

Note noteOf(const std::filesystem::path& file, Date when) {
    std::ifstream stream(file, std::ios::binary);
    Note note;
    note.id = Uuid::random();
    note.content.assign(std::istreambuf_iterator<char>(stream), {});
    note.title = titleFromContent(note.content);
    note.createdAt = note.modifiedAt = when;
    note.isPinned = file.stem().string().ends_with("-pinned");
    return note;
}

/// Takes the files of `source` as notes and its sub-folders as folders, in the order of their
/// names, the first one newest.
void fill(Library& library,
          const std::filesystem::path& source,
          const std::optional<Uuid>& folder) {
    static Date when = Date::now();
    for (const auto& path : entriesOf(source)) {
        if (std::filesystem::is_directory(path)) {
            fill(library, path, library.folders.createFolder(path.filename().string(), folder).id);
        } else if (path.extension() == ".md") {
            const Note note = noteOf(path, when);
            library.notes.create(note);
            if (folder) library.folders.addNoteToFolder(note.id, *folder);
            when = when.plusSeconds(-26 * 3600);
        }
    }
}

}  // namespace

/// Fills the library under the XDG data home from a folder of Markdown files.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: DemoLibrary FOLDER\n";
        return 2;
    }
    Glib::init();
    try {
        Library library(PersistenceController::shared());
        fill(library, argv[1], std::nullopt);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
