#pragma once

#include "app/Session.h"
#include "ui/Toasts.h"

#include <vector>

namespace corvel {

/// What the program leaves for itself in the preferences when it starts again with another library.
inline constexpr const char* kLibraryRestored = "libraryRestored";

/// Says in a toast that the library is a restored one; with a way to the note, what was recovered
/// after a crash and which other version of a note was kept. All arguments must outlive
/// `connections`.
void sayWhatWasKept(Session& session, Toasts& toasts, std::vector<ScopedConnection>& connections);

}  // namespace corvel
