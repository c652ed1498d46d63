#pragma once

#include <gtk/gtk.h>

namespace corvel {

/// The width that a window of `width` pixels needs where the desktop's text is larger than usual;
/// not more than `most` times, for the sake of small screens.
int widthForText(int width, double most = 1.6);

/// Does the same for the column in which a page of preferences keeps its rows.
void widenColumnForText(GtkWidget* page);

}  // namespace corvel
