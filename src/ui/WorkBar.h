#pragma once

#include "platform/ScopedConnection.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/progressbar.h>
#include <gtkmm/revealer.h>

#include <functional>
#include <optional>
#include <string>

namespace corvel {

/// Long work at the foot of a pane: what it does, how far it is, and Cancel. It appears when the
/// work takes longer than half a second.
class WorkBar : public Gtk::Revealer {
public:
    /// The work begins or goes on; `fraction` is from 0 to 1, none while it is not known.
    void showWork(const std::string& text, std::optional<double> fraction);
    void workEnded();
    void setNames(const std::string& work, const std::string& cancel);

protected:
    explicit WorkBar(const std::function<void()>& cancelled);

private:
    Gtk::Label m_label;
    Gtk::ProgressBar m_bar;
    Gtk::Button m_cancel;
    ScopedConnection m_reveal;
    bool m_isWorking = false;
};

}  // namespace corvel
