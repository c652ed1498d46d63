#include "ui/ScrollFollower.h"

#include <cmath>

namespace corvel {

namespace {

constexpr std::chrono::milliseconds kSettling{500};

}  // namespace

ScrollFollower::ScrollFollower(const Glib::RefPtr<Gtk::Adjustment>& adjustment)
    : m_adjustment(adjustment) {
    m_layout = adjustment->signal_changed().connect([this] { apply(); });
    m_value = adjustment->signal_value_changed().connect([this] { moved(); });
}

double ScrollFollower::room() const {
    return m_adjustment->get_upper() - m_adjustment->get_page_size() - m_adjustment->get_lower();
}

void ScrollFollower::set(double percent) {
    m_settled = {};
    m_wanted = percent;
    apply();
}

void ScrollFollower::restore(double percent) {
    set(percent);
    m_settled = std::chrono::steady_clock::now() + kSettling;
}

void ScrollFollower::apply() {
    if (!m_wanted || room() <= 0 || m_isApplying) return;
    m_isApplying = true;
    m_adjustment->set_value(std::round(m_adjustment->get_lower() + room() * *m_wanted));
    m_isApplying = false;
}

void ScrollFollower::moved() {
    if (m_isApplying) return;
    if (std::chrono::steady_clock::now() < m_settled) return apply();
    m_wanted.reset();
    if (room() > 0)
        m_scrolled.emit((m_adjustment->get_value() - m_adjustment->get_lower()) / room());
}

}  // namespace corvel
