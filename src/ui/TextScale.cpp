#include "ui/TextScale.h"

#include <adwaita.h>
#include <gtkmm/settings.h>

#include <algorithm>

namespace corvel {

int widthForText(int width, double most) {
    constexpr double kUsualDpi = 96 * 1024.0;  // as GTK counts it
    const int dpi = Gtk::Settings::get_default()->property_gtk_xft_dpi().get_value();
    return static_cast<int>(width * std::clamp(dpi / kUsualDpi, 1.0, most));
}

void widenColumnForText(GtkWidget* page) {
    if (ADW_IS_CLAMP(page)) {
        auto* column = ADW_CLAMP(page);
        const int usual = adw_clamp_get_maximum_size(column);
        const int width = widthForText(usual);
        adw_clamp_set_maximum_size(column, width);
        // Rows that need much room would otherwise make the columns of two pages differ.
        if (width > usual) adw_clamp_set_tightening_threshold(column, width);
        return;
    }
    for (auto* child = gtk_widget_get_first_child(page); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        widenColumnForText(child);
    }
}

}  // namespace corvel
