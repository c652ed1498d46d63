#pragma once

#include <adwaita.h>
#include <gtkmm/widget.h>

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

    void setChild(Gtk::Widget& child);
    Gtk::Widget& widget();

private:
    AdwToastOverlay* m_overlay;
};

}  // namespace corvel
