#pragma once

#include "app/settings/Localisation.h"

#include <adwaita.h>
#include <gtkmm/widget.h>
#include <gtkmm/window.h>

#include <functional>
#include <string>
#include <vector>

namespace corvel {

/// Passing news at the foot of the window.
class Toasts {
public:
    Toasts();

    void show(const std::string& title);
    /// With a button, at once: news without one that is there goes, earlier news with one comes
    /// back after it. `pressed` is called at most once.
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
    void add(AdwToast* toast, std::vector<AdwToast*>& kind);

    AdwToastOverlay* m_overlay;
    // In the order they came, until they go.
    std::vector<AdwToast*> m_plain;
    std::vector<AdwToast*> m_pressable;
};

}  // namespace corvel
