#pragma once

#include "app/settings/Localisation.h"
#include "library/NoteSummary.h"

#include <gtkmm/box.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>

#include <array>
#include <optional>
#include <string>

namespace corvel {

/// One note in the list: pin mark and title, first text, date and tags.
class NoteRow : public Gtk::Box {
public:
    NoteRow();

    /// Shows the note, or nothing when it has gone meanwhile.
    void show(const std::optional<NoteSummary>& note, const Localisation& texts);

private:
    static constexpr std::size_t kTags = 3;

    void showTags(const NoteSummary& note);

    Gtk::Image m_pin;
    Gtk::Label m_title;
    Gtk::Label m_excerpt;
    Gtk::Label m_date;
    std::array<Gtk::Label, kTags> m_tags;
};

/// What assistive technology reads for the row.
std::string accessibleNameOf(const NoteSummary& note, const Localisation& texts);

}  // namespace corvel
