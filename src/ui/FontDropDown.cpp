#include "ui/FontDropDown.h"

#include <gtkmm/expression.h>
#include <gtkmm/stringlist.h>
#include <gtkmm/stringobject.h>
#include <pangomm/context.h>
#include <pangomm/fontfamily.h>

#include <algorithm>

namespace corvel {

namespace {

constexpr std::size_t kLongestName = 32;

std::vector<Glib::ustring> installed(Gtk::Widget& widget, FontDropDown::Families wanted) {
    std::vector<Glib::ustring> names;
    for (const auto& family : widget.get_pango_context()->list_families()) {
        if (wanted == FontDropDown::Families::all || family->is_monospace())
            names.push_back(family->get_name());
    }
    std::sort(names.begin(), names.end());
    return names;
}

// A file may name a font as long as a window.
Glib::ustring shortened(const Glib::ustring& name) {
    return name.size() <= kLongestName ? name : name.substr(0, kLongestName - 1) + "…";
}

}  // namespace

FontDropDown::FontDropDown(Families families, const std::string& family)
    : m_names(installed(*this, families)) {
    auto position = std::find(m_names.begin(), m_names.end(), Glib::ustring(family));
    if (position == m_names.end()) position = m_names.insert(m_names.begin(), family);
    const auto chosen = static_cast<guint>(position - m_names.begin());
    std::vector<Glib::ustring> shown = m_names;
    shown[chosen] = shortened(shown[chosen]);
    set_model(Gtk::StringList::create(shown));
    set_expression(Gtk::PropertyExpression<Glib::ustring>::create(
        Gtk::StringObject::get_base_type(), "string"));
    set_enable_search(true);
    set_selected(chosen);
    property_selected().signal_changed().connect([this] {
        if (get_selected() < m_names.size()) m_chosen.emit(m_names[get_selected()]);
    });
}

}  // namespace corvel
