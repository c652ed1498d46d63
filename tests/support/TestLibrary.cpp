#include "support/TestLibrary.h"

#include "library/NoteText.h"

#include <algorithm>

namespace corvel {

void TestLibrary::open() {
    m_controller = std::make_unique<PersistenceController>(PersistenceController::Storage::onDisk,
                                                           m_folder.path());
    m_library = std::make_unique<Library>(*m_controller);
}

void TestLibrary::close() {
    m_library.reset();
    m_controller.reset();
}

Note TestLibrary::add(const std::string& content, std::int64_t modifiedSeconds) {
    const Note note = noteFrom(content, modifiedSeconds);
    m_library->notes.create(note);
    return stored(note.id);
}

std::vector<std::string> TestLibrary::titles(const SidebarFilter& filter, SortOption sort) const {
    std::vector<std::string> titles;
    for (const Note& note : m_library->notes.fetchNotes(filter, sort)) {
        titles.push_back(note.title);
    }
    return titles;
}

Note noteFrom(const std::string& content, std::int64_t modifiedSeconds) {
    Note note;
    note.id = Uuid::random();
    note.title = titleFromContent(content);
    note.content = content;
    note.createdAt = Date::fromSeconds(modifiedSeconds);
    note.modifiedAt = note.createdAt;
    return note;
}

std::vector<std::string> pathsOf(const Note& note) {
    std::vector<std::string> paths;
    for (const Tag& tag : note.tags) {
        paths.push_back(tag.fullPath);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string dumpOfStore(PersistenceController& controller) {
    std::string dump;
    for (const std::string_view sql :
         {std::string_view("SELECT quote(pk)||quote(title)||quote(excerpt)||quote(wordCount)||"
                           "quote(folderCount) FROM note ORDER BY pk"),
          std::string_view("SELECT fullPath||isObject||listedCount FROM tag ORDER BY fullPath"),
          std::string_view("SELECT name||noteCount FROM folder ORDER BY pk"),
          std::string_view(
              "SELECT fullPath||notePk||isAttached||isInText FROM noteTag JOIN tag ON pk=tagPk"
              " ORDER BY 1"),
          std::string_view("SELECT folderPk||notePk FROM noteFolder ORDER BY 1"),
          std::string_view("SELECT fullPath||isPinned||modifiedAt||notePk FROM tagList"
                           " JOIN tag ON pk=tagPk ORDER BY 1"),
          std::string_view(
              "SELECT folderPk||isPinned||modifiedAt||notePk FROM folderList ORDER BY 1"),
          std::string_view("SELECT name||value FROM counter WHERE value<>0 ORDER BY name")}) {
        auto query = controller.viewContext().database().query(sql);
        while (query.next()) {
            dump += query.string(0) + "\n";
        }
    }
    return dump;
}

}  // namespace corvel
