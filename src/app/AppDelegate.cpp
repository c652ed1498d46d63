#include "app/AppDelegate.h"

#include "app/ExternalFileProbe.h"
#include "library/Library.h"
#include "library/Notifications.h"
#include "platform/DistantVolumes.h"
#include "platform/Log.h"

#include <glibmm/main.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <set>
#include <string>
#include <utility>
#include <variant>

namespace corvel {

namespace {

using Clock = std::chrono::steady_clock;
using externalFile::displayed;

constexpr std::chrono::milliseconds kSlice{8};
constexpr std::array<std::string_view, 8> kMarkdownExtensions{"md",   "markdown", "mdown",  "mkd",
                                                              "mkdn", "mdwn",     "mdtext", "txt"};

char lowered(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

void log(const std::string& line) {
    logLine("[AppDelegate] " + line);
}

ExternalFault faultOf(const LinkError& error) {
    switch (error.fault()) {
        case LinkFault::binary:
            return ExternalFault::notText;
        case LinkFault::utf16:
        case LinkFault::notUtf8:
            return ExternalFault::notUtf8;
        default:
            return externalFile::faultOf(error.fileFault());
    }
}

}  // namespace

AppDelegate::AppDelegate(Library& library,
                         NoteListViewModel& list,
                         const Preferences& preferences,
                         NotificationCenter& notifications)
    : m_library(library)
    , m_list(list)
    , m_preferences(preferences)
    , m_notifications(notifications) {}

std::span<const std::string_view> AppDelegate::markdownExtensions() {
    return kMarkdownExtensions;
}

bool AppDelegate::isMarkdown(const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    if (extension.size() < 2) return false;
    std::ranges::transform(extension, extension.begin(), lowered);
    return std::ranges::find(kMarkdownExtensions, extension.substr(1)) != kMarkdownExtensions.end();
}

void AppDelegate::open(const Paths& paths, const std::vector<std::string>& addresses) {
    for (const auto& address : addresses) {
        m_report.problems.push_back({displayed(address), ExternalFault::elsewhere});
    }
    m_waiting.insert(m_waiting.end(), paths.begin(), paths.end());
    if (!m_isBusy) begin();
}

void AppDelegate::begin() {
    m_isBusy = true;
    m_isDecided = false;
    std::set<std::filesystem::path> known;
    for (const auto& path : std::exchange(m_waiting, {})) {
        if (known.insert(path).second) sort(path);
    }
    if (!m_unchecked.empty()) {
        log("Opening " + std::to_string(m_unchecked.size()) + " markdown file(s)");
    }
    m_slices = Glib::signal_idle().connect([this] { return workOnce(); });
}

void AppDelegate::sort(const std::filesystem::path& path) {
    std::error_code ignored;
    if (isMarkdown(path)) {
        m_unchecked.push_back(path);
    } else if (!distantVolumes::answersFor(path)) {
        refuse(path, ExternalFault::noAnswer);
    } else if (std::filesystem::is_directory(path, ignored)) {
        m_folders.push_back(path);
    } else {
        refuse(path, ExternalFault::notMarkdown);
    }
}

// False when there is nothing to do for now.
bool AppDelegate::workOnce() {
    const auto deadline = Clock::now() + kSlice;
    do {
        if (!m_unchecked.empty()) {
            check(m_unchecked.front());
            m_unchecked.pop_front();
        } else if (!m_isDecided) {
            decide();
            return false;
        } else if (!m_work.empty()) {
            carryOut(m_work.front());
            m_work.pop_front();
        } else {
            finish();
            return false;
        }
    } while (Clock::now() < deadline);
    return true;
}

void AppDelegate::check(const std::filesystem::path& path) {
    const auto probe = externalFile::probe(path);
    log("Processing: " + displayed(path) +
        ", sandboxAccess: " + (probe.isReadable ? "true" : "false"));
    if (probe.isFolder) {
        m_folders.push_back(path);
    } else if (probe.fault) {
        log("ERROR: Cannot read file: " + displayed(path));
        refuse(path, *probe.fault);
    } else if (isLinked(path)) {
        m_work.push_back({path, ExternalFileUse::link, true});
    } else {
        m_ready.push_back(path);
    }
}

// A file that is a note already is opened without a question.
bool AppDelegate::isLinked(const std::filesystem::path& path) const {
    try {
        return LocalFileNotes(m_library.notes).noteFor(path).has_value();
    } catch (const StoreError& error) {
        logLine(std::string("Error loading notes: ") + error.what());
        return false;
    }
}

void AppDelegate::decide() {
    const auto use = m_preferences.openExternalFiles();
    const bool canPreview = m_ready.size() <= kMostPreviews;
    if (m_ready.empty()) return answer(ExternalFileUse::ask);
    if (use != ExternalFileUse::ask && (use != ExternalFileUse::preview || canPreview))
        return answer(use);
    m_asked.emit({m_ready.size(), m_ready.front(), canPreview});
}

void AppDelegate::answer(ExternalFileUse use) {
    if (!m_isBusy || m_isDecided) return;
    m_isDecided = true;
    for (auto& path : std::exchange(m_ready, {})) {
        if (use != ExternalFileUse::ask) m_work.push_back({std::move(path), use});
    }
    m_slices = Glib::signal_idle().connect([this] { return workOnce(); });
}

void AppDelegate::carryOut(const Work& work) {
    switch (work.use) {
        case ExternalFileUse::import:
            return import(work.path);
        case ExternalFileUse::link:
            return work.isLinked ? openLinked(work.path) : link(work.path);
        case ExternalFileUse::preview:
            return m_notifications.post(notifications::openMarkdownPreview, work.path);
        case ExternalFileUse::ask:
            return;
    }
}

void AppDelegate::import(const std::filesystem::path& path) {
    auto file = externalFile::read(path);
    if (const auto* fault = std::get_if<ExternalFault>(&file)) {
        log("ERROR: Cannot read file: " + displayed(path));
        return refuse(path, *fault);
    }
    log("Bookmark created: " + displayed(path));
    m_notifications.post(notifications::importExternalFile,
                         std::get<ExternalFile>(std::move(file)));
}

void AppDelegate::link(const std::filesystem::path& path) {
    linked(path, m_list.findOrCreateLocalFileNote(path));
}

// Whoever handles the notification tells by a signal what became of it.
void AppDelegate::openLinked(const std::filesystem::path& path) {
    LinkOutcome outcome;
    const ScopedConnection answer(m_list.signalLocalFileOpened().connect(
        [&outcome](const LinkOutcome& what) { outcome = what; }));
    m_notifications.post(notifications::openLocalFile, path);
    if (outcome.noteID) m_report.lastNoteID = outcome.noteID;
}

void AppDelegate::linked(const std::filesystem::path& path, const LinkOutcome& outcome) {
    if (outcome.noteID) {
        m_report.lastNoteID = outcome.noteID;
        return log("Bookmark created: " + displayed(path));
    }
    log("ERROR: Bookmark creation failed: " +
        (outcome.refusal ? displayed(outcome.refusal->what()) : displayed(path)));
    refuse(path, outcome.refusal ? faultOf(*outcome.refusal) : ExternalFault::storeFailed);
}

void AppDelegate::refuse(const std::filesystem::path& path, ExternalFault fault) {
    m_report.problems.push_back({displayed(path), fault});
}

void AppDelegate::finish() {
    m_isBusy = false;
    const auto report = std::exchange(m_report, {});
    const auto folders = std::exchange(m_folders, {});
    if (!m_waiting.empty()) begin();
    if (!folders.empty()) m_foldersFound.emit(folders);
    m_finished.emit(report);
}

}  // namespace corvel
