#include "ui/CutText.h"

#include <gtkmm/tooltip.h>

namespace corvel {

void tellWhenCut(Gtk::Label& label) {
    label.set_has_tooltip(true);
    label.signal_query_tooltip().connect(
        [&label](int, int, bool, const Glib::RefPtr<Gtk::Tooltip>& tooltip) {
            if (!label.get_layout()->is_ellipsized()) return false;
            tooltip->set_text(label.get_text());
            return true;
        },
        false);
}

}  // namespace corvel
