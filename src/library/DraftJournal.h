#pragma once

#include "library/TextEdit.h"
#include "platform/FileDescriptor.h"
#include "platform/Uuid.h"

#include <filesystem>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// Keeps what was typed since the last save in a file of its own, for the start after a crash.
/// Edits are gathered in memory and appended by `flush`, so a key costs nothing and a flush what
/// was typed, whatever the size of the note. Failures are logged, and the next flush tries again.
class DraftJournal {
public:
    using TextSource = std::function<std::string()>;

    /// An empty folder keeps nothing.
    explicit DraftJournal(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    void add(const TextEdit& edit);
    void addTitle(const std::string& title) { m_title = title; }
    /// The text changed in a way that is not known: the next flush writes it whole.
    void addWholeText();

    /// Writes what was added since the last flush. `base` is the text as the store has it, to which
    /// the first edit was made; `text` is asked only when the whole text is needed.
    void flush(const Uuid& noteID, const std::string& base, const TextSource& text);
    /// True while there are edits that no file has.
    bool isBehind() const { return hasPending(); }
    /// To be called when the store has everything, or nothing is wanted any more.
    void discard();

private:
    bool hasPending() const { return m_wholeText || m_title || !m_edits.empty(); }
    void forgetPending();
    std::string pending(const TextSource& text) const;
    bool open();
    bool begin(const Uuid& noteID, const std::string& base, const std::string& edits);
    bool append(std::initializer_list<std::string_view> pieces);
    void logFailure();

    std::filesystem::path m_folder;
    std::filesystem::path m_path;
    FileDescriptor m_file;
    std::size_t m_size = 0;  // of what is whole in the file
    std::vector<TextEdit> m_edits;
    std::size_t m_lastLength = 0;  // of the last edit's inserted text, in characters
    std::optional<std::string> m_title;
    bool m_wholeText = false;
    bool m_hasFailed = false;
};

}  // namespace corvel
