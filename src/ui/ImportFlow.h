#pragma once

#include "app/Session.h"
#include "ui/Toasts.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/filechoosernative.h>
#include <gtkmm/label.h>
#include <gtkmm/progressbar.h>
#include <gtkmm/revealer.h>
#include <gtkmm/window.h>

#include <filesystem>
#include <vector>

namespace corvel {

/// Takes Markdown files into the library: choosing, options, progress with Cancel at the foot of
/// the list, and the report.
class ImportFlow : public Gtk::Revealer {
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
    void askAboutFolders(const std::vector<std::filesystem::path>& paths);
    void start(const std::vector<std::filesystem::path>& paths, bool keepFolders);
    void showProgress(std::size_t done, std::size_t found);
    void finished(const ImportReport& report);
    void showReport(const ImportReport& report);

    Session& m_session;
    Toasts& m_toasts;
    Gtk::Label m_label;
    Gtk::ProgressBar m_bar;
    Gtk::Button m_cancel;
    Glib::RefPtr<Gtk::FileChooserNative> m_chooser;
    ScopedConnection m_reveal;
};

}  // namespace corvel
