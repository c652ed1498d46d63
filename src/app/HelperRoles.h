#pragma once

#include <optional>

namespace corvel {

/// The program is its own helper, for texts that its parser is slow at (GuardedRenderer), for
/// backups that are looked through before they are trusted (BackupChecker) and for printed notes
/// that get their links and running lines (PdfJob). Plays such a part if
/// the arguments name one and gives the exit status; none: this is an ordinary start.
std::optional<int> runAsHelper(int argc, char** argv);

}  // namespace corvel
