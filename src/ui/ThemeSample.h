#pragma once

#include "app/settings/Localisation.h"
#include "themes/Theme.h"

#include <gtkmm/drawingarea.h>
#include <pangomm/layout.h>

namespace corvel {

/// A small picture of a window in a theme: sidebar and a rendered note.
class ThemeSample : public Gtk::DrawingArea {
public:
    ThemeSample(Theme theme, const Localisation& texts);

    void show(const Theme& theme);

private:
    struct Run;

    void draw(const Cairo::RefPtr<Cairo::Context>& cairo) const;
    void drawSidebar(const Cairo::RefPtr<Cairo::Context>& cairo) const;
    void drawPage(const Cairo::RefPtr<Cairo::Context>& cairo) const;
    /// Returns the width it took, in the picture's units.
    double drawCode(const Cairo::RefPtr<Cairo::Context>& cairo, double x, double y) const;
    static void drawText(const Cairo::RefPtr<Cairo::Context>& cairo, const Run& run);
    static double widthOf(const Cairo::RefPtr<Cairo::Context>& cairo, const Run& run);
    static Glib::RefPtr<Pango::Layout> layoutOf(const Cairo::RefPtr<Cairo::Context>& cairo,
                                                const Run& run);

    Theme m_theme;
    const Localisation& m_texts;
};

}  // namespace corvel
