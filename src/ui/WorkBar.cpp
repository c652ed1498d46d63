#include "ui/WorkBar.h"

#include "ui/Accessible.h"

#include <glibmm/main.h>

#include <chrono>

namespace corvel {

namespace {

/// Work shorter than this is not worth a progress bar.
constexpr std::chrono::milliseconds kPatience{500};

}  // namespace

WorkBar::WorkBar(const std::function<void()>& cancelled) {
    set_transition_type(Gtk::RevealerTransitionType::SLIDE_UP);
    auto* box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 12);
    box->add_css_class("toolbar");
    auto* column = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 4);
    column->set_hexpand(true);
    column->set_valign(Gtk::Align::CENTER);
    column->set_margin_start(8);
    m_label.set_xalign(0);
    m_label.set_ellipsize(Pango::EllipsizeMode::END);
    m_label.add_css_class("caption");
    column->append(m_label);
    column->append(m_bar);
    box->append(*column);
    box->append(m_cancel);
    set_child(*box);
    m_cancel.signal_clicked().connect(cancelled);
}

void WorkBar::setNames(const std::string& work, const std::string& cancel) {
    m_cancel.set_label(cancel);
    setAccessibleLabel(m_bar, work);
}

void WorkBar::showWork(const std::string& text, std::optional<double> fraction) {
    m_label.set_text(text);
    if (fraction) {
        m_bar.set_fraction(*fraction);
    } else {
        m_bar.pulse();
    }
    if (m_isWorking) return;
    m_isWorking = true;
    m_reveal = Glib::signal_timeout().connect(
        [this] {
            set_reveal_child(true);
            return false;
        },
        static_cast<unsigned>(kPatience.count()));
}

void WorkBar::workEnded() {
    m_isWorking = false;
    m_reveal.disconnect();
    set_reveal_child(false);
}

}  // namespace corvel
