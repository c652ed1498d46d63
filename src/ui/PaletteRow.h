#pragma once

#include "app/PaletteViewModel.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>

namespace corvel {

/// One row of the palette: a label with the matched letters in bold, and its detail at the end.
class PaletteRow : public Gtk::Box {
public:
    PaletteRow();

    void show(const PaletteItem& item);
    /// Pango markup of `text` with `ranges` in bold.
    static std::string markup(const std::string& text, const std::vector<MatchRange>& ranges);

private:
    Gtk::Label m_label;
    Gtk::Label m_detail;
};

}  // namespace corvel
