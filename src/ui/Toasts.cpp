#include "ui/Toasts.h"

#include "app/Texts.h"
#include "platform/Handle.h"
#include "ui/Adw.h"

#include <gdk/gdkkeysyms.h>
#include <gtkmm/eventcontrollerkey.h>

#include <chrono>
#include <utility>

namespace corvel {

namespace {

constexpr std::chrono::seconds kPlain{4};
constexpr std::chrono::seconds kWithButton{8};

AdwToast* makeToast(const std::string& title, std::chrono::seconds timeout) {
    // Titles are markup, and notes may be called anything.
    const Handle<char, g_free> escaped(g_markup_escape_text(title.c_str(), -1));
    AdwToast* toast = adw_toast_new(escaped.get());
    adw_toast_set_timeout(toast, static_cast<guint>(timeout.count()));
    return toast;
}

}  // namespace

Toasts::Toasts() : m_overlay(ADW_TOAST_OVERLAY(adw_toast_overlay_new())) {}

void Toasts::show(const std::string& title) {
    add(makeToast(title, kPlain), m_plain);
}

void Toasts::show(const std::string& title,
                  const std::string& button,
                  std::function<void()> pressed) {
    // What is shown would wait and come back when nobody thinks of it any more.
    for (AdwToast* past : std::vector(m_plain))
        adw_toast_dismiss(past);
    AdwToast* toast = makeToast(title, kWithButton);
    adw_toast_set_button_label(toast, button.c_str());
    adw_toast_set_priority(toast, ADW_TOAST_PRIORITY_HIGH);  // not after what is past
    adw::connect(toast, "button-clicked", std::move(pressed));
    add(toast, m_pressable);
}

void Toasts::add(AdwToast* toast, std::vector<AdwToast*>& kind) {
    adw::connect(toast, "dismissed", [toast, &kind] { std::erase(kind, toast); });
    adw_toast_overlay_add_toast(m_overlay, toast);
    kind.push_back(toast);
}

bool Toasts::press(const std::string& button) {
    if (m_pressable.empty()) return false;
    AdwToast* toast = m_pressable.back();
    if (button != adw_toast_get_button_label(toast)) return false;
    g_signal_emit_by_name(toast, "button-clicked");
    adw_toast_dismiss(toast);
    return true;
}

void Toasts::undoByKey(Gtk::Window& window, const Localisation& texts) {
    const auto keys = Gtk::EventControllerKey::create();
    keys->signal_key_pressed().connect(
        [this, &say = texts](guint key, guint, Gdk::ModifierType modifiers) {
            return key == GDK_KEY_z && modifiers == Gdk::ModifierType::CONTROL_MASK &&
                   press(say(texts::undo));
        },
        false);
    window.add_controller(keys);
}

void Toasts::setChild(Gtk::Widget& child) {
    adw_toast_overlay_set_child(m_overlay, child.gobj());
}

Gtk::Widget& Toasts::widget() {
    return adw::wrapped(GTK_WIDGET(m_overlay));
}

}  // namespace corvel
