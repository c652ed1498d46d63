#pragma once

#include "ui/Adw.h"
#include "ui/PageWindow.h"
#include "ui/PreviewView.h"

#include <giomm/filemonitor.h>
#include <gtkmm/button.h>
#include <gtkmm/stack.h>

#include <filesystem>
#include <functional>

namespace corvel {

/// A Markdown file of the disk, rendered; followed as it changes. It becomes a note only when the
/// user says so.
class FilePreviewWindow : public PageWindow {
public:
    enum class State { shown, missing, tooLarge, notText, unreadable };

    FilePreviewWindow(Session& session, std::filesystem::path path);
    ~FilePreviewWindow() override;

    const std::filesystem::path& path() const { return m_path; }
    State state() const { return m_state; }
    /// The user wants the file among the notes.
    std::function<void(const std::filesystem::path&)> onImport;

protected:
    void relabel() override;

private:
    void follow();
    void read();
    State load();
    void showState();

    std::filesystem::path m_path;
    Glib::RefPtr<Gio::FileMonitor> m_monitor;
    ScopedConnection m_reading;
    Gtk::Stack m_stack;
    PreviewView m_page;
    adw::StatusPage m_problem;
    Gtk::Button m_import;
    State m_state = State::shown;
};

}  // namespace corvel
