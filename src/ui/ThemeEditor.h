#pragma once

#include "app/Session.h"
#include "themes/ThemeDraft.h"
#include "ui/Labels.h"
#include "ui/SubWindow.h"
#include "ui/ThemeControls.h"
#include "ui/ThemePreview.h"
#include "ui/Toasts.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <sigc++/signal.h>

#include <functional>
#include <memory>
#include <string>

namespace corvel {

/// Edits a copy of a theme beside a sample note. Nothing is written before it is asked for, and
/// edits are not thrown away without a question.
class ThemeEditor {
public:
    /// `session` and `parent` must outlive the editor.
    ThemeEditor(Session& session, const ThemeDraft& draft, Gtk::Window& parent);

    void present() { m_window.present(); }
    Gtk::Window& window() { return m_window.window(); }
    const ThemeDraft& draft() const { return m_draft; }
    ThemeControls& controls() { return m_controls; }

    /// Asks first when another theme's file would be replaced; then the window closes.
    void save();
    /// Saves and makes the theme the current one.
    void apply();

    sigc::signal<void(const Theme&)>& signalSaved() { return m_saved; }

private:
    void build();
    void label();
    void changed();
    void saveAnd(const std::function<void(const Theme&)>& then);
    void write(const Theme& theme, const std::function<void(const Theme&)>& then);
    bool closeRequested();
    void close();

    Session& m_session;
    ThemeDraft m_draft;
    SubWindow m_window;
    Labels m_labels;
    ThemeControls m_controls;
    ThemePreview& m_preview;
    Toasts m_toasts;
    Gtk::Button m_cancel;
    Gtk::Button m_save;
    Gtk::Button m_apply;
    bool m_isDone = false;
    sigc::signal<void(const Theme&)> m_saved;
};

/// Asks whether the theme file of this name may be replaced.
void askToReplace(Gtk::Window& parent,
                  const Localisation& texts,
                  const std::string& fileName,
                  const std::function<void(bool replaces)>& answered);

}  // namespace corvel
