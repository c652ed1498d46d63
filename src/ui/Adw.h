#pragma once

#include <adwaita.h>
#include <gtkmm/applicationwindow.h>
#include <gtkmm/button.h>
#include <gtkmm/widget.h>

#include <functional>
#include <string>
#include <utility>

/// libadwaita has no C++ binding here: thin typed wrappers over what the windows use of its C
/// interface. A wrapper owns nothing; the widget lives as long as its parent.
namespace corvel::adw {

inline Gtk::Widget& wrapped(GtkWidget* widget) {
    return *Glib::wrap(widget);
}

/// Calls `handler` at every emission of a signal, whatever its arguments. The handler lives as long
/// as the object.
inline void connect(gpointer object, const char* signal, std::function<void()> handler) {
    using Handler = std::function<void()>;
    // Swapped: the data comes first, before arguments of any number.
    g_signal_connect_data(
        object, signal, G_CALLBACK(+[](gpointer data) { (*static_cast<Handler*>(data))(); }),
        new Handler(std::move(handler)),
        +[](gpointer data, GClosure*) { delete static_cast<Handler*>(data); }, G_CONNECT_SWAPPED);
}

class HeaderBar {
public:
    HeaderBar() : m_bar(ADW_HEADER_BAR(adw_header_bar_new())) {}

    void packStart(Gtk::Widget& child) { adw_header_bar_pack_start(m_bar, child.gobj()); }
    void packEnd(Gtk::Widget& child) { adw_header_bar_pack_end(m_bar, child.gobj()); }
    void setTitle(Gtk::Widget& child) { adw_header_bar_set_title_widget(m_bar, child.gobj()); }
    /// Which side shows the window's own buttons.
    void setWindowControls(bool start, bool end) {
        adw_header_bar_set_show_start_title_buttons(m_bar, start);
        adw_header_bar_set_show_end_title_buttons(m_bar, end);
    }
    Gtk::Widget& widget() { return wrapped(GTK_WIDGET(m_bar)); }

private:
    AdwHeaderBar* m_bar;
};

class StatusPage {
public:
    StatusPage() : m_page(ADW_STATUS_PAGE(adw_status_page_new())) {}

    void set(const std::string& icon, const std::string& title, const std::string& description) {
        adw_status_page_set_icon_name(m_page, icon.c_str());
        adw_status_page_set_title(m_page, title.c_str());
        // The description is markup.
        char* escaped = g_markup_escape_text(description.c_str(), -1);
        adw_status_page_set_description(m_page, escaped);
        g_free(escaped);
    }
    void setChild(Gtk::Widget& child) { adw_status_page_set_child(m_page, child.gobj()); }
    Gtk::Widget& widget() { return wrapped(GTK_WIDGET(m_page)); }

private:
    AdwStatusPage* m_page;
};

/// A window whose content reaches into the title bar's place.
inline Gtk::ApplicationWindow& applicationWindow(GtkApplication* application) {
    return *Glib::wrap(GTK_APPLICATION_WINDOW(adw_application_window_new(application)));
}

inline void setContent(Gtk::ApplicationWindow& window, Gtk::Widget& content) {
    adw_application_window_set_content(ADW_APPLICATION_WINDOW(window.gobj()), content.gobj());
}

}  // namespace corvel::adw
