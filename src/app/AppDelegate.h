#pragma once

#include "app/ExternalFile.h"
#include "app/settings/Preferences.h"
#include "library/NoteListViewModel.h"
#include "platform/NotificationCenter.h"
#include "platform/ScopedConnection.h"

#include <sigc++/signal.h>

#include <deque>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

class Library;

/// Takes files that the desktop hands over: looks at them, has the user asked what is to be done
/// with them, and does it by notifications. All in slices on the main loop; one bad file spoils no
/// other. Files that come meanwhile wait for their turn, together.
class AppDelegate {
public:
    using Paths = std::vector<std::filesystem::path>;

    /// More previews than this at once are not wanted by anybody.
    static constexpr std::size_t kMostPreviews = 8;

    struct Question {
        std::size_t count = 0;
        std::filesystem::path first;
        bool canPreview = false;
    };
    struct Report {
        std::vector<ExternalProblem> problems;
        std::optional<Uuid> lastNoteID;  ///< of the notes that mirror files
    };

    /// All must outlive the delegate.
    AppDelegate(Library& library,
                NoteListViewModel& list,
                const Preferences& preferences,
                NotificationCenter& notifications);

    /// Extensions of the files that are opened, in lower case and without the dot.
    static std::span<const std::string_view> markdownExtensions();
    static bool isMarkdown(const std::filesystem::path& path);

    /// `addresses` are of files that do not lie on this machine.
    void open(const Paths& paths, const std::vector<std::string>& addresses = {});
    /// The answer to a question; `ask` for none of these.
    void answer(ExternalFileUse use);

    /// To be answered, at any time.
    sigc::signal<void(const Question&)>& signalAsked() { return m_asked; }
    /// Folders were among the files; they are not opened here.
    sigc::signal<void(const Paths&)>& signalFolders() { return m_foldersFound; }
    /// Everything that was given is done.
    sigc::signal<void(const Report&)>& signalFinished() { return m_finished; }

private:
    struct Work {
        std::filesystem::path path;
        ExternalFileUse use;
        bool isLinked = false;  ///< a note has it already
    };

    void begin();
    void sort(const std::filesystem::path& path);
    bool workOnce();
    void check(const std::filesystem::path& path);
    void decide();
    void carryOut(const Work& work);
    void import(const std::filesystem::path& path);
    void link(const std::filesystem::path& path);
    void openLinked(const std::filesystem::path& path);
    void linked(const std::filesystem::path& path, const LinkOutcome& outcome);
    void refuse(const std::filesystem::path& path, ExternalFault fault);
    bool isLinked(const std::filesystem::path& path) const;
    void finish();

    Library& m_library;
    NoteListViewModel& m_list;
    const Preferences& m_preferences;
    NotificationCenter& m_notifications;

    Paths m_waiting;
    bool m_isBusy = false;
    std::deque<std::filesystem::path> m_unchecked;
    Paths m_ready;  // for the question
    bool m_isDecided = false;
    std::deque<Work> m_work;
    Paths m_folders;
    Report m_report;
    ScopedConnection m_slices;
    sigc::signal<void(const Question&)> m_asked;
    sigc::signal<void(const Paths&)> m_foldersFound;
    sigc::signal<void(const Report&)> m_finished;
};

}  // namespace corvel
