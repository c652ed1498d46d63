#pragma once

#include <gtkmm/accessible.h>
#include <gtkmm/button.h>
#include <gtkmm/menubutton.h>

#include <string>

namespace corvel {

/// The name that assistive technology reads; a tooltip is none.
inline void setAccessibleLabel(Gtk::Accessible& widget, const std::string& label) {
    Glib::Value<Glib::ustring> value;
    value.init(Glib::Value<Glib::ustring>::value_type());
    value.set(label);
    widget.update_property(Gtk::Accessible::Property::LABEL, value);
}

/// Name and tooltip of a control that shows only a picture.
template <typename Control>
void labelControl(Control& control, const std::string& name, const std::string& tooltip = {}) {
    setAccessibleLabel(control, name);
    control.set_tooltip_text(tooltip.empty() ? name : tooltip);
}

}  // namespace corvel
