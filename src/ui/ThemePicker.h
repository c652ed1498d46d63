#pragma once

#include "app/Session.h"
#include "ui/Adw.h"
#include "ui/Labels.h"
#include "ui/SubWindow.h"
#include "ui/ThemeCard.h"
#include "ui/ThemeEditor.h"
#include "ui/Toasts.h"

#include <gtkmm/button.h>
#include <gtkmm/filechoosernative.h>
#include <gtkmm/flowbox.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace corvel {

/// The window of all themes: choose one, make, edit, import and delete them.
class ThemePicker {
public:
    /// `session` and `parent` must outlive the picker.
    ThemePicker(Session& session, Gtk::Window& parent);

    void present();
    Gtk::Window& window() { return m_window.window(); }
    void importFiles(const std::vector<std::filesystem::path>& files);

    const std::vector<ThemeCard*>& cards() const { return m_cards; }
    /// The editor that is open, if one is.
    ThemeEditor* editor() { return m_editor.get(); }

private:
    void build();
    void buildDrop();
    void addKeys();
    bool moveFocus(guint key);
    void fill();
    void addCard(const Theme& theme);
    void markCurrent();
    void focusCurrent();
    void perform(const Theme& theme, ThemeCard::Action action);
    void edit(const ThemeDraft& draft);
    void remove(const Theme& theme);
    void putBack(const std::vector<Theme>& themes, const Theme& current);
    void chooseFiles();
    void importNext();
    void importFile(const std::filesystem::path& file, const Theme& theme);

    Session& m_session;
    ThemeManager& m_themes;
    SubWindow m_window;
    Toasts m_toasts;
    Gtk::Button m_new;
    Gtk::Button m_import;
    Gtk::FlowBox m_grid;
    std::vector<ThemeCard*> m_cards;
    std::unique_ptr<ThemeEditor> m_editor;
    Glib::RefPtr<Gtk::FileChooserNative> m_chooser;
    std::vector<std::filesystem::path> m_waiting;  ///< files to import, the next one last
    std::vector<ScopedConnection> m_connections;
    ScopedConnection m_filling;
    ScopedConnection m_closing;
    Labels m_labels;
};

}  // namespace corvel
