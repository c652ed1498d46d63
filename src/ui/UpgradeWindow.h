#pragma once

#include "app/settings/Localisation.h"
#include "library/DerivedRows.h"
#include "platform/ScopedConnection.h"

#include <gtkmm/label.h>
#include <gtkmm/progressbar.h>
#include <gtkmm/window.h>

#include <functional>

namespace corvel {

/// Stands in for the main window while a library of an older version is made ready, and does that
/// work in slices. Closing it ends the program; the next start begins anew.
class UpgradeWindow : public Gtk::Window {
public:
    /// Calls `done` once, from the main loop, when all is ready; `done` may destroy this window.
    /// A store that refuses stops the program.
    UpgradeWindow(derivedRows::Rebuild& work,
                  const Localisation& texts,
                  std::function<void()> done);

private:
    bool slice();
    void showProgress();

    derivedRows::Rebuild& m_work;
    const Localisation& m_texts;
    std::function<void()> m_done;
    Gtk::Label m_heading;
    Gtk::Label m_label;
    Gtk::ProgressBar m_bar;
    ScopedConnection m_idle;
};

}  // namespace corvel
