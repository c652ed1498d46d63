#pragma once

#include "app/settings/Localisation.h"
#include "library/NoteSummary.h"

#include <gtkmm/image.h>
#include <gtkmm/label.h>
#include <gtkmm/widget.h>

#include <array>
#include <optional>
#include <string>

namespace corvel {

/// One note in the list: pin mark and title, first text, date and tags.
///
/// It lays its labels out itself: a list view makes some 200 rows and measures each again and
/// again, while the height follows from the fonts and the width from the pane.
class NoteRow : public Gtk::Widget {
public:
    NoteRow();
    ~NoteRow() override;

    /// Shows the note, or nothing when it has gone meanwhile.
    void show(const std::optional<NoteSummary>& note, const Localisation& texts);

protected:
    Gtk::SizeRequestMode get_request_mode_vfunc() const override;
    void measure_vfunc(Gtk::Orientation orientation,
                       int forSize,
                       int& minimum,
                       int& natural,
                       int& minimumBaseline,
                       int& naturalBaseline) const override;
    void size_allocate_vfunc(int width, int height, int baseline) override;

private:
    static constexpr std::size_t kTags = 3;

    struct LineHeights {
        int title;
        int excerpt;
        int last;
    };

    void dropChildren();
    LineHeights heights() const;
    void placeTitle(int width, int height);
    void placeLast(int y, int width, int height);
    void showTags(const NoteSummary& note);

    mutable Gtk::Image m_pin;
    mutable Gtk::Image m_file;
    mutable Gtk::Label m_title;
    mutable Gtk::Label m_excerpt;
    mutable Gtk::Label m_date;
    mutable std::array<Gtk::Label, kTags> m_tags;
};

/// What assistive technology reads for the row.
std::string accessibleNameOf(const NoteSummary& note, const Localisation& texts);

}  // namespace corvel
