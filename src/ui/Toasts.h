#pragma once

#include "app/settings/Localisation.h"

#include <adwaita.h>
#include <gtkmm/widget.h>
#include <gtkmm/window.h>

#include <functional>
#include <string>

namespace corvel {

/// Passing news at the foot of the window.
class Toasts {
public:
    Toasts();

    void show(const std::string& title);
    /// With a button; `pressed` is called at most once.
    void show(const std::string& title, const std::string& button, std::function<void()> pressed);

    /// Presses the button of the newest toast that is still there, if it is called `button`. False
    /// when there is none.
    bool press(const std::string& button);
    /// Lets Ctrl+Z press "Undo" where nothing else in `window` takes the key: a text with the focus
    /// undoes its last change first.
    void undoByKey(Gtk::Window& window, const Localisation& texts);

    void setChild(Gtk::Widget& child);
    Gtk::Widget& widget();

private:
    AdwToastOverlay* m_overlay;
    AdwToast* m_pressable = nullptr;  // the newest with a button, until it goes
};

}  // namespace corvel
