#pragma once

#include "app/Session.h"
#include "library/LibraryManifest.h"
#include "ui/Toasts.h"
#include "ui/WorkBar.h"

#include <gtkmm/filechoosernative.h>
#include <gtkmm/window.h>

#include <chrono>
#include <filesystem>
#include <vector>

namespace corvel {

/// Takes Markdown files into the library: choosing, options, progress with Cancel at the foot of
/// the list, and the report.
class ImportFlow : public WorkBar {
public:
    ImportFlow(Session& session, Toasts& toasts);

    void chooseFiles();
    void chooseFolder();
    /// Files or folders dropped on the window; folders are asked about.
    void importPaths(const std::vector<std::filesystem::path>& paths);
    void relabel();

private:
    using Chosen = std::function<void(const std::vector<std::filesystem::path>&)>;

    Gtk::Window& window();
    Glib::RefPtr<Gtk::FileChooserNative> makeChooser(const Text& title,
                                                     Gtk::FileChooser::Action action) const;
    void choose(const Glib::RefPtr<Gtk::FileChooserNative>& chooser, Chosen chosen);
    void askAboutLibrary(const std::filesystem::path& library, const LibraryManifest& manifest);
    void askAboutFolders(const std::vector<std::filesystem::path>& paths);
    void importExternal(const std::filesystem::path& path);
    void start(const std::vector<std::filesystem::path>& paths, bool keepFolders);
    void showProgress(std::size_t done, std::size_t found);
    void showWhatIsThere();
    void finished(const ImportReport& report);
    void showReport(const ImportReport& report);

    Session& m_session;
    Toasts& m_toasts;
    Glib::RefPtr<Gtk::FileChooserNative> m_chooser;
    bool m_fillsEmptyList = false;
    std::chrono::steady_clock::time_point m_lastShown;
    std::vector<std::filesystem::path> m_external;  // wait for the end of those before them
    ScopedConnection m_externalStart;
    ScopedConnection m_externalFiles;
};

}  // namespace corvel
