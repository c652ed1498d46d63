#pragma once

namespace corvel::notifications {

// Names of the notifications between commands and view models. The payload's type stands behind
// each.

inline constexpr const char* createNewNote = "createNewNote";              // none
inline constexpr const char* formatBold = "formatBold";                    // none
inline constexpr const char* formatItalic = "formatItalic";                // none
inline constexpr const char* formatStrikethrough = "formatStrikethrough";  // none
inline constexpr const char* formatLink = "formatLink";                    // none
inline constexpr const char* formatCodeBlock = "formatCodeBlock";          // none
inline constexpr const char* formatHeading = "formatHeading";              // none
inline constexpr const char* formatTaskList = "formatTaskList";            // none
inline constexpr const char* importMarkdown = "importMarkdown";            // none
inline constexpr const char* openReaderMode = "openReaderMode";            // none
inline constexpr const char* sendAsEmail = "sendAsEmail";                  // none
inline constexpr const char* noteAction = "noteAction";                    // NoteAction
inline constexpr const char* folderDidChange = "folderDidChange";          // none
inline constexpr const char* importExternalFile = "importExternalFile";    // ExternalFile
inline constexpr const char* openMarkdownPreview = "openMarkdownPreview";  // path
inline constexpr const char* openLocalFile = "openLocalFile";              // path
inline constexpr const char* reloadCurrentNoteFromDisk = "reloadCurrentNoteFromDisk";  // none

}  // namespace corvel::notifications
