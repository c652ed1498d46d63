#pragma once

#include "platform/ScopedConnection.h"

#include <gtkmm/adjustment.h>
#include <sigc++/signal.h>

#include <chrono>
#include <optional>

namespace corvel {

/// One scrolled pane as a share 0..1 of what can be scrolled. A share that was set is kept while
/// the pane is still being laid out, until the user scrolls; setting it reports nothing.
class ScrollFollower {
public:
    explicit ScrollFollower(const Glib::RefPtr<Gtk::Adjustment>& adjustment);

    void set(double percent);
    /// The same for a pane that just got another text: what it does by itself until it has been
    /// laid out counts for nothing.
    void restore(double percent);
    sigc::signal<void(double)>& signalScrolled() { return m_scrolled; }

private:
    double room() const;
    void apply();
    void moved();

    Glib::RefPtr<Gtk::Adjustment> m_adjustment;
    std::optional<double> m_wanted;
    std::chrono::steady_clock::time_point m_settled;
    bool m_isApplying = false;
    ScopedConnection m_layout;
    ScopedConnection m_value;
    sigc::signal<void(double)> m_scrolled;
};

}  // namespace corvel
