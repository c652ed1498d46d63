#pragma once

#include "ui/Labels.h"
#include "ui/SignalHandlers.h"

#include <adwaita.h>
#include <gtkmm/window.h>

#include <string>

namespace corvel {

/// A menu of the pages of a preferences window, below its header bar: it takes the place of the
/// tabs at the bottom where their names do not fit, as with large text in a narrow window. The tabs
/// are found among the window's own widgets; where there are none such, nothing is added.
class PageMenu {
public:
    /// `window` is an AdwPreferencesWindow with its pages; it and `labels` must outlive the menu.
    PageMenu(Gtk::Window& window, Labels& labels);

private:
    void build();
    void followPage();
    void followWidth();
    void showPage();
    void tellPage();
    void choosePage();
    void update();

    Gtk::Window& m_window;
    GtkWidget* m_tabs;
    GtkWidget* m_title;
    AdwViewStack* m_pages;
    GtkDropDown* m_menu = nullptr;
    std::string m_name;
    SignalHandlers m_pageSignals;
    SignalHandlers m_menuSignals;
    SignalHandlers m_titleSignals;
    SignalHandlers m_windowSignals;
};

}  // namespace corvel
