#pragma once

#include "app/settings/Localisation.h"
#include "library/NoteListViewModel.h"

#include <string>

namespace corvel {

/// What a list without rows says, and what can be done about it.
struct EmptyState {
    std::string icon;
    std::string title;
    std::string detail;
    bool offersNewNote = false;
    bool offersImport = false;
};

EmptyState emptyStateOf(const NoteListViewModel& list, const Localisation& texts);

/// The name over the list: of a fixed entry or a tag; a folder's is the caller's.
std::string filterName(const SidebarFilter& filter, const Localisation& texts);
const char* filterIcon(const SidebarFilter& filter);

}  // namespace corvel
