#pragma once

#include <gtkmm/dropdown.h>
#include <sigc++/signal.h>

#include <string>
#include <vector>

namespace corvel {

/// Chooses one of the installed font families, with a search field.
class FontDropDown : public Gtk::DropDown {
public:
    enum class Families { all, monospace };

    /// `family` is offered first when it is not installed.
    FontDropDown(Families families, const std::string& family);

    sigc::signal<void(const std::string&)>& signalChosen() { return m_chosen; }

private:
    std::vector<Glib::ustring> m_names;
    sigc::signal<void(const std::string&)> m_chosen;
};

}  // namespace corvel
