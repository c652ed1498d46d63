#include "library/ImportFolders.h"

#include "model/PersistenceController.h"
#include "platform/Text.h"

namespace corvel {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestPath = 4096;

const Folder* folderWithID(const std::vector<Folder>& folders, const Uuid& id) {
    for (const auto& folder : folders) {
        if (folder.id == id) return &folder;
        if (const auto* found = folderWithID(folder.children, id)) return found;
    }
    return nullptr;
}

// Empty for what leads out of the library, or so deep that no export has written it.
fs::path pathInLibrary(const std::string& told) {
    if (told.size() > kLongestPath) return {};
    auto path = fs::path(told).relative_path().lexically_normal();
    if (!path.has_filename()) path = path.parent_path();
    return path.empty() || path == "." || *path.begin() == ".." ? fs::path() : path;
}

}  // namespace

void ImportFolders::begin(const std::vector<fs::path>& libraries) {
    for (; m_librariesBegun < libraries.size(); ++m_librariesBegun) {
        const auto& library = libraries[m_librariesBegun];
        auto manifest = LibraryManifest::in(library);
        if (!manifest || !m_options.keepFolders) continue;
        for (auto& entry : manifest->folders)
            m_waiting.push_back({library, std::move(entry)});
    }
}

// All of a slice as one commit.
void ImportFolders::work(std::chrono::steady_clock::time_point end) {
    ViewContext::Group group(m_library.controller.viewContext());
    do {
        makeOne(m_waiting[m_next++]);
    } while (isBusy() && std::chrono::steady_clock::now() < end);
    group.commit();
}

void ImportFolders::makeOne(const Waiting& waiting) {
    const auto& entry = waiting.entry;
    const auto parent = entry.parentID ? m_made.find(*entry.parentID) : m_made.end();
    const auto parentID = parent != m_made.end() ? std::optional(parent->second) : std::nullopt;
    const Uuid id = childOf(parentID, entry.name, entry.id);
    m_used.insert(id);
    m_made.emplace(entry.id, id);
    m_folders.emplace(Key{waiting.library, fs::path(entry.path).lexically_normal()}, id);
}

Uuid ImportFolders::childOf(const std::optional<Uuid>& parent,
                            const std::string& name,
                            const std::optional<Uuid>& wanted) {
    const auto roots = m_library.folders.fetchRootFolders();
    const auto* above = parent ? folderWithID(roots, *parent) : nullptr;
    const auto& siblings = above != nullptr ? above->children : roots;
    const Folder* found = nullptr;
    for (const auto& folder : siblings) {
        if (folder.name != name || m_used.contains(folder.id)) continue;
        if (found == nullptr || folder.id == wanted) found = &folder;
    }
    if (found != nullptr) return found->id;
    const bool isFree = wanted && !m_library.folders.fetchFolder(*wanted);
    return m_library.folders.createFolder(name, parent, isFree ? *wanted : Uuid::random()).id;
}

std::optional<Uuid> ImportFolders::folderFor(const fs::path& library, const fs::path& folder) {
    // An exported library comes back to where it was.
    if (folder.empty()) return library.empty() ? m_options.intoFolder : std::nullopt;
    const Key key{library, folder};
    if (const auto known = m_folders.find(key); known != m_folders.end()) return known->second;
    const auto parent = folderFor(library, folder.parent_path());
    const auto name = text::repaired(folder.filename().string());
    const Uuid id = childOf(parent, name, std::nullopt);
    m_folders.emplace(key, id);
    return id;
}

std::vector<Uuid> ImportFolders::foldersOf(const fs::path& library,
                                           const fs::path& folder,
                                           const std::optional<std::vector<std::string>>& told) {
    std::vector<Uuid> ids;
    const auto add = [&](const std::optional<Uuid>& id) {
        if (id) ids.push_back(*id);
    };
    if (!m_options.keepFolders) {
        add(m_options.intoFolder);
    } else if (told && !library.empty()) {
        for (const auto& path : *told)
            add(folderFor(library, pathInLibrary(path)));
    } else {
        add(folderFor(library, folder));
    }
    return ids;
}

}  // namespace corvel
