#include "ui/PaletteRow.h"

#include "platform/Text.h"
#include "ui/Accessible.h"

#include <glibmm/markup.h>

#include <algorithm>

namespace corvel {

PaletteRow::PaletteRow() : Gtk::Box(Gtk::Orientation::HORIZONTAL, 12) {
    add_css_class("palette-row");
    m_label.set_hexpand(true);
    m_label.set_xalign(0);
    m_label.set_ellipsize(Pango::EllipsizeMode::END);
    m_label.set_single_line_mode(true);
    m_detail.add_css_class("dim-label");
    m_detail.add_css_class("numeric");
    append(m_label);
    append(m_detail);
}

void PaletteRow::show(const PaletteItem& item) {
    m_label.set_markup(markup(item.label, item.matches));
    m_detail.set_text(item.detail);
    m_detail.set_visible(!item.detail.empty());
    // Greyed and told so to assistive technology, but still there to be read.
    set_sensitive(item.isEnabled);
    // The list's own row widget is what assistive technology meets.
    if (auto* row = get_parent()) {
        setAccessibleLabel(*row,
                           item.detail.empty() ? item.label : item.label + ", " + item.detail);
    }
}

std::string PaletteRow::markup(const std::string& text, const std::vector<MatchRange>& ranges) {
    const auto escaped = [&text](std::size_t begin, std::size_t end) {
        return Glib::Markup::escape_text(text::repaired(text.substr(begin, end - begin))).raw();
    };
    std::string markup;
    std::size_t written = 0;
    for (const MatchRange& range : ranges) {
        if (range.end > text.size()) break;
        markup += escaped(written, range.begin) + "<b>" + escaped(range.begin, range.end) + "</b>";
        written = range.end;
    }
    return markup + escaped(written, text.size());
}

}  // namespace corvel
