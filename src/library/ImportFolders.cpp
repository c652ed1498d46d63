#include "library/ImportFolders.h"

#include "model/PersistenceController.h"
#include "platform/Text.h"

#include <iterator>

namespace corvel {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestPath = 4096;
constexpr std::ptrdiff_t kDeepestPath = 256;
constexpr std::size_t kMostFolders = 1000;  // of one note

// Empty for what leads out of the library, or so deep that no export has written it.
fs::path pathInLibrary(const std::string& told) {
    if (told.size() > kLongestPath) return {};
    auto path = fs::path(told).relative_path().lexically_normal();
    if (!path.has_filename()) path = path.parent_path();
    return path.empty() || path == "." || *path.begin() == ".." ? fs::path() : path;
}

}  // namespace

ImportFolders::ImportFolders(Library& library, ImportOptions options)
    : m_library(library), m_changes(library.controller.viewContext()), m_options(options) {}

void ImportFolders::begin(const std::vector<fs::path>& libraries) {
    for (; m_librariesBegun < libraries.size(); ++m_librariesBegun) {
        const auto& library = libraries[m_librariesBegun];
        auto manifest = LibraryManifest::in(library);
        if (!manifest || !m_options.keepFolders) continue;
        for (auto& entry : manifest->folders)
            m_waiting.push_back({library, std::move(entry)});
    }
}

std::vector<ImportFolders::Place> ImportFolders::want(
    const Place& lies, const std::optional<std::vector<std::string>>& told) {
    auto places = placesOf(lies, told);
    for (const auto& place : places) {
        const bool isKnown = place.second.empty() || m_folders.contains(place) ||
                             (!m_wanted.empty() && m_wanted.back() == place);
        if (!isKnown) m_wanted.push_back(place);
    }
    return places;
}

void ImportFolders::work(std::chrono::steady_clock::time_point end) {
    makeWhole([&] {
        ViewContext::Group group(m_library.controller.viewContext());
        do {
            makeNext();
        } while (isBusy() && std::chrono::steady_clock::now() < end);
        group.commit();
    });
}

std::vector<Uuid> ImportFolders::foldersAt(const std::vector<Place>& places) {
    std::vector<Uuid> ids;
    makeWhole([&] {
        for (const auto& place : places) {
            if (const auto id = folderFor(place)) ids.push_back(*id);
        }
    });
    return ids;
}

std::vector<ImportFolders::Place> ImportFolders::placesOf(
    const Place& lies, const std::optional<std::vector<std::string>>& told) const {
    if (!m_options.keepFolders) return {{}};
    const auto& library = lies.first;
    if (!told || library.empty()) return {lies};
    std::vector<Place> places;
    for (const auto& path : *told) {
        if (places.size() == kMostFolders) break;
        Place place{library, pathInLibrary(path)};
        const auto depth = std::distance(place.second.begin(), place.second.end());
        if (depth > 0 && (depth <= kDeepestPath || m_folders.contains(place)))
            places.push_back(std::move(place));
    }
    return places;
}

// What the store refuses is taken back: it would come once more whenever it is wanted again.
void ImportFolders::makeWhole(const std::function<void()>& make) {
    try {
        m_changes.apply(make);
    } catch (const StoreError&) {
        takeBack();
        throw;
    }
}

void ImportFolders::makeNext() {
    if (m_next < m_waiting.size()) {
        makeListed(m_waiting[m_next++]);
    } else {
        const Place place = std::move(m_wanted.front());
        m_wanted.pop_front();
        folderFor(place);
    }
}

void ImportFolders::makeListed(const Waiting& waiting) {
    const auto& entry = waiting.entry;
    const auto parent = entry.parentID ? m_made.find(*entry.parentID) : m_made.end();
    const auto parentID = parent != m_made.end() ? std::optional(parent->second) : std::nullopt;
    const Uuid id = childOf(parentID, entry.name, entry.id);
    m_used.insert(id);
    m_made.emplace(entry.id, id);
    m_folders.emplace(Place{waiting.library, fs::path(entry.path).lexically_normal()}, id);
}

std::optional<Uuid> ImportFolders::folderFor(const Place& place) {
    const auto& [library, folder] = place;
    // An exported library comes back to where it was.
    if (folder.empty()) return library.empty() ? m_options.intoFolder : std::nullopt;
    if (const auto known = m_folders.find(place); known != m_folders.end()) return known->second;
    const auto parent = folderFor({library, folder.parent_path()});
    const Uuid id = childOf(parent, text::repaired(folder.filename().string()), std::nullopt);
    m_folders.emplace(place, id);
    return id;
}

Uuid ImportFolders::childOf(const std::optional<Uuid>& parent,
                            const std::string& name,
                            const std::optional<Uuid>& wanted) {
    const Uuid* found = nullptr;
    for (const auto& id : siblings(parent, name)) {
        if (m_used.contains(id)) continue;
        if (found == nullptr || id == wanted) found = &id;
    }
    if (found != nullptr) return *found;
    auto& folders = m_library.folders;
    const bool isFree = wanted && !folders.fetchFolder(*wanted);
    const Uuid id = folders.createFolder(name, parent, isFree ? *wanted : Uuid::random()).id;
    m_siblings[{parent, name}].push_back(id);
    m_seenChanges = folders.changeCount();
    return id;
}

const std::vector<Uuid>& ImportFolders::siblings(const std::optional<Uuid>& parent,
                                                 const std::string& name) {
    if (m_seenChanges != m_library.folders.changeCount()) {
        m_siblings.clear();
        for (const auto& folder : m_library.folders.fetchAllFolders())
            m_siblings[{folder.parentID, folder.name}].push_back(folder.id);
        m_seenChanges = m_library.folders.changeCount();
    }
    return m_siblings[{parent, name}];
}

void ImportFolders::takeBack() {
    m_changes.takeBack();
    m_seenChanges.reset();
    std::unordered_set<Uuid> there;
    for (const auto& folder : m_library.folders.fetchAllFolders())
        there.insert(folder.id);
    const auto isGone = [&](const auto& entry) { return !there.contains(entry.second); };
    std::erase_if(m_folders, isGone);
    std::erase_if(m_made, isGone);
}

}  // namespace corvel
