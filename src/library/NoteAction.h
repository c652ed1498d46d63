#pragma once

#include "platform/Uuid.h"

namespace corvel {

enum class NoteActionType { togglePin, toggleArchive, moveToTrash };

/// Something to be done with one note; broadcast as the `noteAction` notification.
struct NoteAction {
    Uuid noteID;
    NoteActionType type;
};

}  // namespace corvel
