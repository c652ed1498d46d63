#pragma once

#include "app/settings/Localisation.h"
#include "library/DraftFile.h"
#include "library/NoteRepository.h"

#include <filesystem>
#include <string>
#include <vector>

namespace corvel {

/// A note that got words back which the last run could not save.
struct RecoveredNote {
    Uuid id;
    std::string title;
    bool isNewNote;  ///< the note had changed or was gone: its words became a note of their own
};

/// Folds the drafts of a crashed run into the store. A draft file is removed only after the commit
/// that holds its words; one that cannot be read is set aside. Failures are logged.
class DraftRecovery {
public:
    DraftRecovery(NoteRepository& notes, const Localisation& texts);

    std::vector<RecoveredNote> run(const std::filesystem::path& folder);

private:
    void recover(const std::filesystem::path& path);
    void fold(const Draft& draft);
    void update(Note note, const Draft& draft);
    void createFrom(const Draft& draft, const std::optional<Note>& stored);

    NoteRepository& m_notes;
    const Localisation& m_texts;
    std::vector<RecoveredNote> m_recovered;
};

}  // namespace corvel
