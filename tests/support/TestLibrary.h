#pragma once

#include "library/Library.h"
#include "model/Note.h"
#include "model/PersistenceController.h"
#include "support/TemporaryFolder.h"

#include <memory>
#include <string>
#include <vector>

namespace corvel {

/// A library on disk in a folder of the test's own; can be closed and opened again.
class TestLibrary {
public:
    TestLibrary() { open(); }

    void open();
    void close();
    void reopen() {
        close();
        open();
    }

    Library& operator*() { return *m_library; }
    Library* operator->() { return m_library.get(); }
    PersistenceController& controller() { return *m_controller; }
    const std::filesystem::path& folder() const { return m_folder.path(); }

    /// Stores a note with this content, titled by it, and returns its record as stored.
    Note add(const std::string& content, std::int64_t modifiedSeconds = 1'000);
    Note stored(const Uuid& id) const { return m_library->notes.fetchNote(id).value(); }
    /// Titles of a filter's notes in the order of the list.
    std::vector<std::string> titles(const SidebarFilter& filter,
                                    SortOption sort = SortOption::modifiedDate) const;

private:
    TemporaryFolder m_folder;
    std::unique_ptr<PersistenceController> m_controller;
    std::unique_ptr<Library> m_library;
};

/// A record as an editor would make it from text.
Note noteFrom(const std::string& content, std::int64_t modifiedSeconds = 1'000);
std::vector<std::string> pathsOf(const Note& note);
/// Every derived row of the store as text, in a fixed order.
std::string dumpOfStore(PersistenceController& controller);

}  // namespace corvel
