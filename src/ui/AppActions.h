#pragma once

#include "app/AppCommands.h"

#include <giomm/actionmap.h>

#include <functional>

namespace corvel {

/// The actions of the program itself, which the desktop calls: those of its menu entry and of its
/// notifications. Work without a window.
class AppActions {
public:
    static constexpr const char* kShowInFolder = "app.show-in-folder";

    /// `perform` does a command in the window, which it opens if need be.
    AppActions(Gio::ActionMap& actions, const std::function<void(CommandID)>& perform);
};

}  // namespace corvel
