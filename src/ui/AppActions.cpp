#include "ui/AppActions.h"

#include "ui/FilePaths.h"

#include <giomm/simpleaction.h>
#include <glibmm/convert.h>
#include <glibmm/variant.h>
#include <sigc++/functors/ptr_fun.h>

namespace corvel {

namespace {

// Anybody on the session bus may call it: what is no file of this machine is passed over.
void showFile(const Glib::VariantBase& parameter) {
    try {
        const auto uri = Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(parameter);
        showInFolder(Glib::filename_from_uri(uri.get()));
    } catch (const Glib::Error&) {
        return;
    }
}

}  // namespace

AppActions::AppActions(Gio::ActionMap& actions, const std::function<void(CommandID)>& perform) {
    actions.add_action("new-note", [perform] { perform(CommandID::newNote); });
    actions.add_action("search", [perform] { perform(CommandID::findInAllNotes); });
    const auto show = Gio::SimpleAction::create("show-in-folder", Glib::VariantType("s"));
    show->signal_activate().connect(sigc::ptr_fun(showFile));
    actions.add_action(show);
}

}  // namespace corvel
