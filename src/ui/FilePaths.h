#pragma once

#include <gtkmm/filechoosernative.h>

#include <filesystem>
#include <vector>

namespace corvel {

/// The local files that were chosen.
std::vector<std::filesystem::path> pathsOf(Gtk::FileChooserNative& chooser);

}  // namespace corvel
