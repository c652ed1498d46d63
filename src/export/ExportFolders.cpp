#include "export/ExportFolders.h"

#include "library/AttachmentLinks.h"

#include <algorithm>

namespace corvel {

namespace {

// A path must leave room for a note's name and for where the export lies.
constexpr std::size_t kLongestPath = 1000;

}  // namespace

ExportFolders::ExportFolders(const std::string& trashName) {
    m_root.files.reserve(LibraryManifest::kFileName);
    m_root.files.reserve(kAttachmentFolder);
    m_root.isMade = true;
    m_trash.path = m_root.files.next(trashName, {});
    m_trash.files.reserve(kAttachmentFolder);
}

void ExportFolders::add(const std::vector<Folder>& roots) {
    // A stack in place of calls: folders may be nested as deep as somebody likes.
    std::vector<const Folder*> waiting;
    const auto push = [&](const std::vector<Folder>& folders) {
        for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder)
            waiting.push_back(&*folder);
    };
    push(roots);
    while (!waiting.empty()) {
        const Folder* folder = waiting.back();
        waiting.pop_back();
        if (!knows(folder->id)) addOne(*folder);
        push(folder->children);
    }
}

void ExportFolders::addOne(const Folder& folder) {
    const auto parent = folder.parentID ? m_places.find(*folder.parentID) : m_places.end();
    // What would lie too deep begins again at the root: the manifest tells where it belongs.
    const bool isInParent =
        parent != m_places.end() && parent->second.place.path.size() < kLongestPath;
    Place& above = isInParent ? parent->second.place : m_root;
    const auto name = above.files.next(folder.name, {});
    Numbered made{m_entries.size(), {}};
    made.place.path = isInParent ? above.path + "/" + name : name;
    made.place.files.reserve(kAttachmentFolder);
    m_entries.push_back({folder.id, folder.name, made.place.path, folder.parentID});
    m_places.emplace(folder.id, std::move(made));
}

std::optional<Uuid> ExportFolders::firstOf(const std::vector<Uuid>& ids) const {
    std::optional<Uuid> first;
    std::size_t lowest = m_entries.size();
    for (const auto& id : ids) {
        const auto found = m_places.find(id);
        if (found == m_places.end() || found->second.number >= lowest) continue;
        lowest = found->second.number;
        first = id;
    }
    return first;
}

std::vector<std::string> ExportFolders::pathsOf(const std::vector<Uuid>& ids) const {
    std::vector<std::pair<std::size_t, std::string>> found;
    for (const auto& id : ids) {
        const auto place = m_places.find(id);
        if (place != m_places.end())
            found.emplace_back(place->second.number, place->second.place.path);
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> paths;
    paths.reserve(found.size());
    for (auto& [number, path] : found)
        paths.push_back(std::move(path));
    return paths;
}

}  // namespace corvel
