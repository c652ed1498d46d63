#include "ui/EmptyState.h"

#include "app/Texts.h"

namespace corvel {

namespace {

using Kind = SidebarFilter::Kind;

struct FilterTexts {
    Text name;
    const char* icon;
    Text empty;
    Text emptyDetail;
};

const FilterTexts& textsOf(Kind kind) {
    static constexpr FilterTexts kAll{texts::allNotes, "corvel-notes-symbolic", texts::emptyLibrary,
                                      texts::emptyLibraryDetail};
    static constexpr FilterTexts kUnfiled{texts::unfiled, "folder-symbolic", texts::emptyUnfiled,
                                          texts::emptyUnfiledDetail};
    static constexpr FilterTexts kLocal{texts::localFiles, "corvel-file-symbolic",
                                        texts::emptyLocalFiles, texts::emptyLocalFilesDetail};
    static constexpr FilterTexts kArchive{texts::archive, "corvel-archive-symbolic",
                                          texts::emptyArchive, texts::emptyArchiveDetail};
    static constexpr FilterTexts kTrash{texts::trash, "user-trash-symbolic", texts::emptyTrash,
                                        texts::emptyTrashDetail};
    static constexpr FilterTexts kFolder{texts::folders, "folder-symbolic", texts::emptyFolder,
                                         texts::emptyFolderDetail};
    static constexpr FilterTexts kTag{texts::tags, "corvel-tag-symbolic", texts::emptyTag,
                                      texts::emptyTagDetail};
    switch (kind) {
        case Kind::unfiled:
            return kUnfiled;
        case Kind::localFiles:
            return kLocal;
        case Kind::archived:
            return kArchive;
        case Kind::trash:
            return kTrash;
        case Kind::folder:
            return kFolder;
        case Kind::tag:
            return kTag;
        case Kind::allNotes:
            break;
    }
    return kAll;
}

}  // namespace

EmptyState emptyStateOf(const NoteListViewModel& list, const Localisation& texts) {
    if (list.isSearching()) {
        return {.icon = "edit-find-symbolic",
                .title = texts(texts::noHits),
                .detail = texts.format(texts::noHitsDetail, {list.searchQuery()})};
    }
    const auto& filter = list.filter();
    const auto& row = textsOf(filter.kind);
    return {.icon = filter.kind == Kind::allNotes ? "document-edit-symbolic" : row.icon,
            .title = texts(row.empty),
            .detail = texts.format(row.emptyDetail, {filter.tagPath}),
            .offersNewNote = filter.kind == Kind::allNotes || filter.kind == Kind::folder,
            .offersImport = filter.kind == Kind::allNotes};
}

std::string filterName(const SidebarFilter& filter, const Localisation& texts) {
    if (filter.kind == Kind::tag) return "#" + filter.tagPath;
    return texts(textsOf(filter.kind).name);
}

const char* filterIcon(const SidebarFilter& filter) {
    return textsOf(filter.kind).icon;
}

}  // namespace corvel
