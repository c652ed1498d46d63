#include "ui/AssistantInput.h"

#include "ai/AssistantTexts.h"
#include "app/texts/AssistantPanelTexts.h"
#include "ui/Accessible.h"

#include <gdk/gdkkeysyms.h>
#include <gtkmm/eventcontrollerkey.h>

namespace corvel {

namespace {

constexpr int kMostHeight = 160;

}  // namespace

AssistantInput::AssistantInput() : Gtk::Box(Gtk::Orientation::HORIZONTAL) {
    build();
    m_text.get_buffer()->signal_changed().connect([this] {
        showButton();
        m_changed.emit();
    });
    m_button.signal_clicked().connect([this] { (m_isStreaming ? m_stop : m_send).emit(); });
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    auto* controller = keys->gobj();
    keys->signal_key_pressed().connect(
        [this, controller](guint key, guint, Gdk::ModifierType modifiers) {
            auto* event = gtk_event_controller_get_current_event(GTK_EVENT_CONTROLLER(controller));
            return keyPressed(key, modifiers, event);
        },
        false);
    m_text.add_controller(keys);
    showButton();
}

void AssistantInput::build() {
    add_css_class("assistant-input");
    m_text.set_wrap_mode(Gtk::WrapMode::WORD_CHAR);
    m_text.set_accepts_tab(false);
    m_text.set_top_margin(8);
    m_text.set_bottom_margin(8);
    m_text.set_left_margin(10);
    m_text.set_right_margin(4);
    // A bar for scrolling would need more height than a line has.
    m_scroller.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::EXTERNAL);
    m_scroller.set_propagate_natural_height(true);
    m_scroller.set_max_content_height(kMostHeight);
    m_scroller.set_child(m_text);
    m_placeholder.set_can_target(false);
    m_placeholder.set_halign(Gtk::Align::START);
    m_placeholder.set_valign(Gtk::Align::START);
    m_placeholder.set_margin_top(8);
    m_placeholder.set_margin_start(10);
    m_placeholder.set_ellipsize(Pango::EllipsizeMode::END);
    m_placeholder.add_css_class("dim-label");
    m_overlay.set_child(m_scroller);
    m_overlay.add_overlay(m_placeholder);
    m_overlay.set_hexpand(true);
    m_button.set_valign(Gtk::Align::END);
    m_button.add_css_class("circular");
    append(m_overlay);
    append(m_button);
}

bool AssistantInput::keyPressed(guint key, Gdk::ModifierType modifiers, GdkEvent* event) {
    if (key != GDK_KEY_Return && key != GDK_KEY_KP_Enter) return false;
    using Mask = Gdk::ModifierType;
    if ((modifiers & (Mask::SHIFT_MASK | Mask::ALT_MASK)) != Mask{}) return false;
    // An input method may be composing: its Enter ends that.
    if (gtk_text_view_im_context_filter_keypress(m_text.gobj(), event) != FALSE) return true;
    if (!m_isStreaming) m_send.emit();
    return true;
}

void AssistantInput::setText(const std::string& text) {
    if (text != this->text()) m_text.get_buffer()->set_text(text);
}

void AssistantInput::setStreaming(bool isStreaming) {
    m_isStreaming = isStreaming;
    showButton();
}

void AssistantInput::showButton() {
    const bool isEmpty = m_text.get_buffer()->get_char_count() == 0;
    m_placeholder.set_visible(isEmpty);
    m_button.set_icon_name(m_isStreaming ? "media-playback-stop-symbolic" : "corvel-send-symbolic");
    const bool isUsable = m_isStreaming || !isEmpty;
    if (!isUsable && m_button.is_focus()) m_text.grab_focus();
    m_button.set_sensitive(isUsable);
    if (m_isStreaming) {
        m_button.remove_css_class("suggested-action");
    } else {
        m_button.add_css_class("suggested-action");
    }
    const auto& label = m_isStreaming ? m_stopLabel : m_sendLabel;
    labelControl(m_button, label, m_isStreaming ? label : label + " (Enter)");
}

void AssistantInput::relabel(const Localisation& texts) {
    m_sendLabel = texts(texts::assistantSend);
    m_stopLabel = texts(texts::assistantStop);
    m_placeholder.set_text(texts(texts::assistantPlaceholder));
    setAccessibleLabel(m_text, texts(texts::assistantMessage));
    showButton();
}

}  // namespace corvel
