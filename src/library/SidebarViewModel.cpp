#include "library/SidebarViewModel.h"

#include "library/Library.h"
#include "library/Notifications.h"
#include "library/TagTree.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <glibmm/main.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace corvel {

namespace {

// Tag ids are made afresh at each build; what counts is the shape.
bool sameShape(const std::vector<Tag>& a, const std::vector<Tag>& b) {
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(), [](const Tag& left, const Tag& right) {
            return left.fullPath == right.fullPath && sameShape(left.children, right.children);
        });
}

constexpr int kMostDepth = 32;

using FoldersByID = std::unordered_map<Uuid, const Folder*>;

std::string pathOf(const Folder& folder, const FoldersByID& all) {
    std::string path = folder.name;
    auto parentID = folder.parentID;
    for (int depth = 0; parentID && depth < kMostDepth; ++depth) {
        const auto parent = all.find(*parentID);
        if (parent == all.end()) break;
        path.insert(0, parent->second->name + " / ");
        parentID = parent->second->parentID;
    }
    return path;
}

}  // namespace

SidebarViewModel::SidebarViewModel(Library& library,
                                   const Localisation& texts,
                                   NotificationCenter& notifications)
    : m_library(library), m_texts(texts), m_notifications(notifications) {
    m_connections.emplace_back(
        library.notes.signalChanged().connect([this](const NoteChange&) { reloadSoon(); }));
    m_connections.push_back(notifications.observe(notifications::folderDidChange,
                                                  [this](const std::any&) { reload(); }));
}

void SidebarViewModel::reloadSoon() {
    if (m_pendingReload.connected()) return;
    m_pendingReload = Glib::signal_idle().connect([this] {
        reload();
        return false;
    });
}

void SidebarViewModel::reload() {
    m_pendingReload.disconnect();
    logged("Error loading folders:", [this] {
        if (readAll()) m_changed.emit();
    });
}

bool SidebarViewModel::readAll() {
    auto newFolders = m_library.folders.fetchRootFolders();
    auto newTags = buildTagTree(m_library.listing.tagPaths(), m_texts.languageCode());
    const auto now = m_library.listing.counts();
    const NoteCounts before{allNotesCount, unfiledCount, localFilesCount, archivedCount,
                            trashCount};
    if (now == before && newFolders == folders && sameShape(newTags, tagTree)) return false;
    folders = std::move(newFolders);
    tagTree = std::move(newTags);
    allNotesCount = now.allNotes;
    unfiledCount = now.unfiled;
    localFilesCount = now.localFiles;
    archivedCount = now.archived;
    trashCount = now.trash;
    return true;
}

std::optional<Folder> SidebarViewModel::createFolder(const std::string& name,
                                                     const std::optional<Uuid>& parentID) {
    std::optional<Folder> created;
    changeFolders("Error creating folder:",
                  [&] { created = m_library.folders.createFolder(name, parentID); });
    return created;
}

void SidebarViewModel::renameFolder(const Uuid& id, const std::string& name) {
    changeFolders("Error renaming folder:", [&] { m_library.folders.renameFolder(id, name); });
}

void SidebarViewModel::deleteFolder(const Uuid& id) {
    changeFolders("Error deleting folder:", [&] { m_library.folders.deleteFolder(id); });
}

std::vector<FolderChoice> SidebarViewModel::allFolders() const {
    std::vector<Folder> all;
    logged("Error loading folders:", [&] { all = m_library.folders.fetchAllFolders(); });
    FoldersByID byID;
    for (const Folder& folder : all)
        byID.emplace(folder.id, &folder);
    std::vector<FolderChoice> choices;
    choices.reserve(all.size());
    for (const Folder& folder : all)
        choices.push_back({folder.id, pathOf(folder, byID)});
    std::ranges::stable_sort(choices, [&](const auto& a, const auto& b) {
        return text::collate(a.path, b.path, m_texts.languageCode()) < 0;
    });
    return choices;
}

std::vector<Uuid> SidebarViewModel::folderIDsOf(const Uuid& noteID) const {
    std::vector<Uuid> ids;
    logged("Error loading folders:", [&] { ids = m_library.folders.folderIDsOf(noteID); });
    return ids;
}

bool SidebarViewModel::dropNeedsQuestion(const std::vector<Uuid>& noteIDs,
                                         const Uuid& folderID) const {
    return std::any_of(noteIDs.begin(), noteIDs.end(), [&](const Uuid& noteID) {
        const auto ids = folderIDsOf(noteID);
        return std::any_of(ids.begin(), ids.end(), [&](const Uuid& id) { return id != folderID; });
    });
}

void SidebarViewModel::moveNotes(const std::vector<Uuid>& noteIDs, const Uuid& folderID) {
    changeFolders("Error moving note to folder:", [&] {
        ViewContext::Group group(m_library.controller.viewContext());
        for (const Uuid& noteID : noteIDs) {
            m_library.folders.moveNoteToFolder(noteID, folderID);
        }
        group.commit();
    });
}

void SidebarViewModel::addNotes(const std::vector<Uuid>& noteIDs, const Uuid& folderID) {
    changeFolders("Error moving note to folder:", [&] {
        ViewContext::Group group(m_library.controller.viewContext());
        for (const Uuid& noteID : noteIDs) {
            m_library.folders.addNoteToFolder(noteID, folderID);
        }
        group.commit();
    });
}

void SidebarViewModel::changeFolders(const char* failure, const std::function<void()>& operation) {
    logged(failure, operation);
    m_notifications.post(notifications::folderDidChange);
}

void SidebarViewModel::logged(const char* failure, const std::function<void()>& operation) {
    try {
        operation();
    } catch (const StoreError& error) {
        logLine(std::string(failure) + " " + error.what());
    }
}

}  // namespace corvel
