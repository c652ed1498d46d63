#pragma once

#include "app/ExportSession.h"
#include "app/Session.h"
#include "ui/ExportRows.h"
#include "ui/LongWorkNotice.h"
#include "ui/Toasts.h"

#include <gtkmm/button.h>
#include <gtkmm/filechoosernative.h>
#include <gtkmm/label.h>
#include <gtkmm/progressbar.h>
#include <gtkmm/revealer.h>
#include <gtkmm/window.h>

#include <functional>
#include <memory>
#include <vector>

namespace corvel {

/// The sheet in which one note, or several, are exported. It deletes itself when it is closed.
class ExportSheet {
public:
    static void show(Gtk::Window& parent,
                     Session& session,
                     Toasts& toasts,
                     ExportSession::ExporterMaker makeExporter,
                     std::vector<Uuid> noteIDs);
    ExportSheet(const ExportSheet&) = delete;
    ExportSheet& operator=(const ExportSheet&) = delete;
    ~ExportSheet();

private:
    ExportSheet(Gtk::Window& parent,
                Session& session,
                Toasts& toasts,
                std::unique_ptr<ExportSession> work);
    void build();
    void buildHeader(Gtk::Box& content);
    void connect();
    void relabel();
    void follow();
    void followProgress();
    void begin();
    void askForPlace();
    void askForFolder();
    void openChooser(Gtk::FileChooser::Action action,
                     const Text& title,
                     std::function<void(const std::string& path)> chosen);
    void tellReady() const;
    void finished();
    bool close();

    Session& m_session;
    Toasts& m_toasts;
    std::unique_ptr<ExportSession> m_work;
    Gtk::Window m_window;
    Gtk::Label m_title;
    Gtk::Label m_name;  // of the note, if it is one
    Gtk::Button m_cancel;
    Gtk::Button m_export;
    ExportRows m_rows;
    LongWorkNotice m_notice;
    Gtk::Revealer m_progress;
    Gtk::Label m_progressText;
    Gtk::ProgressBar m_bar;
    Gtk::Label m_error;
    Glib::RefPtr<Gtk::FileChooserNative> m_chooser;
    std::string m_place;  // name of what was written, for the toast
    std::filesystem::path m_folder;
    ScopedConnection m_pulse;
    ScopedConnection m_patience;
    ScopedConnection m_preferences;
    bool m_isClosed = false;
};

}  // namespace corvel
