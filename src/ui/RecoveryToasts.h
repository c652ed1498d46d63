#pragma once

#include "app/Session.h"
#include "ui/Toasts.h"

#include <vector>

namespace corvel {

/// Says in a toast, with a way to the note, what was recovered after a crash and which other
/// version of a note was kept. All arguments must outlive `connections`.
void sayWhatWasKept(Session& session, Toasts& toasts, std::vector<ScopedConnection>& connections);

}  // namespace corvel
