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

/// The widget's tooltip. When that of a visible widget changes, the toolkit asks the display where
/// the pointer is, which in the window's making costs more than the widget: it is not asked before
/// the widget is on the screen.
inline void setTooltip(Gtk::Widget& widget, const Glib::ustring& text) {
    if (widget.get_tooltip_text() == text) return;
    const bool isHiddenFor = widget.get_visible() && !widget.get_mapped();
    if (isHiddenFor) widget.set_visible(false);
    widget.set_tooltip_text(text);
    if (isHiddenFor) widget.set_visible(true);
}

/// Name and tooltip of a control that shows only a picture.
template <typename Control>
void labelControl(Control& control, const std::string& name, const std::string& tooltip = {}) {
    setAccessibleLabel(control, name);
    setTooltip(control, tooltip.empty() ? name : tooltip);
}

/// A button that the toolkit put into `widget` without a name; found by its picture.
inline Gtk::Button* buttonWithIcon(Gtk::Widget& widget, const char* icon) {
    auto* button = dynamic_cast<Gtk::Button*>(&widget);
    if (button != nullptr && button->get_icon_name() == icon) return button;
    for (auto* child = widget.get_first_child(); child != nullptr;
         child = child->get_next_sibling()) {
        if (auto* found = buttonWithIcon(*child, icon)) return found;
    }
    return nullptr;
}

}  // namespace corvel
