#include "ui/PageWindow.h"

#include <gdk/gdkkeysyms.h>
#include <gtkmm/eventcontrollerkey.h>

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

constexpr int kSmallestWidth = 360;
constexpr int kSmallestHeight = 300;

}  // namespace

PageWindow::PageWindow(Session& session, std::string name, Size size)
    : m_session(session), m_name(std::move(name)) {
    add_css_class("page-window");
    set_icon_name("com.qno.corvel");
    set_titlebar(m_header.widget());
    set_size_request(kSmallestWidth, kSmallestHeight);
    const auto& store = session.preferences.store();
    set_default_size(
        std::max(store.integer(m_name + "Width").value_or(size.width), kSmallestWidth),
        std::max(store.integer(m_name + "Height").value_or(size.height), kSmallestHeight));
    set_hide_on_close(true);
    followKeys();
    signal_close_request().connect(
        [this] {
            rememberSize();
            return false;
        },
        false);
    m_preferenceChanged =
        session.preferences.signalChanged().connect([this](const std::string& key) {
            if (key == "appLanguage") relabel();
        });
}

PageWindow::~PageWindow() {
    if (is_visible()) rememberSize();
}

void PageWindow::rememberSize() {
    int width = 0;
    int height = 0;
    get_default_size(width, height);
    auto& store = m_session.preferences.store();
    store.setInteger(m_name + "Width", width);
    store.setInteger(m_name + "Height", height);
}

// Before the page: a web view takes every key it gets.
void PageWindow::followKeys() {
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType modifiers) {
            const bool hasControl =
                (modifiers & Gdk::ModifierType::CONTROL_MASK) == Gdk::ModifierType::CONTROL_MASK;
            if (key != GDK_KEY_Escape && !(hasControl && (key == GDK_KEY_w || key == GDK_KEY_W))) {
                return false;
            }
            close();
            return true;
        },
        false);
    add_controller(keys);
}

}  // namespace corvel
