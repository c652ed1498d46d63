#pragma once

#include "app/ScrollSync.h"
#include "ui/PageWindow.h"
#include "ui/PreviewView.h"
#include "ui/ScrollFollower.h"

#include <gtkmm/paned.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/textview.h>

namespace corvel {

/// How Markdown is written here: a text that shows all of it, beside what becomes of it.
class GuideWindow : public PageWindow {
public:
    explicit GuideWindow(Session& session);
    ~GuideWindow() override;

    void open();

protected:
    void relabel() override;

private:
    void build();
    void followScrolling();
    void applyColors();

    Gtk::Paned m_panes;
    Gtk::ScrolledWindow m_scroller;
    Gtk::TextView* m_source;
    PreviewView m_page;
    ScrollFollower m_sourceScroll{m_scroller.get_vadjustment()};
    ScrollSync m_sync;
    std::string m_language;
    ScopedConnection m_themeChanged;
};

}  // namespace corvel
