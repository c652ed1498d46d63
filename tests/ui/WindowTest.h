#pragma once

#include "KeyPress.h"
#include "app/Session.h"
#include "model/PersistenceController.h"
#include "support/TemporaryFolder.h"
#include "ui/Resources.h"

#include <adwaita.h>
#include <gtest/gtest.h>
#include <gtkmm/init.h>
#include <gtkmm/window.h>

#include <vector>

namespace corvel {

/// A session with a plain window, for tests of the windows beside the main one.
class WindowTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        gtk_init();
        Gtk::init_gtkmm_internals();
        adw_init();
        registerResources();
    }

    ~WindowTest() override { session.finish(); }

    /// Every widget of a type below `root`.
    template <typename Widget>
    static std::vector<Widget*> all(Gtk::Widget& root) {
        std::vector<Widget*> found;
        if (auto* widget = dynamic_cast<Widget*>(&root)) found.push_back(widget);
        for (auto* child = root.get_first_child(); child != nullptr;
             child = child->get_next_sibling()) {
            const auto below = all<Widget>(*child);
            found.insert(found.end(), below.begin(), below.end());
        }
        return found;
    }

    void type(const char* key) { pressKey(parent, key); }

    TemporaryFolder folder;
    PersistenceController controller{PersistenceController::Storage::onDisk,
                                     folder.path() / "store"};
    UserDefaults defaults{folder.path() / "preferences"};
    ThemeManager themes{defaults, folder.path() / "Themes", [] { return false; }};
    std::vector<CommandID> performed;
    Session session{controller, defaults, themes,
                    [this](CommandID command) { performed.push_back(command); }};
    Gtk::Window parent;
};

}  // namespace corvel
