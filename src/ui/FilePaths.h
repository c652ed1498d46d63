#pragma once

#include <glibmm/value.h>
#include <gtkmm/droptarget.h>
#include <gtkmm/filechoosernative.h>

#include <filesystem>
#include <functional>
#include <vector>

namespace corvel {

using FilePaths = std::vector<std::filesystem::path>;

/// The chosen files that lie on this machine.
FilePaths chosenFiles(const Gtk::FileChooserNative& chooser);

/// The name of a file for headings and messages: a long one has its middle cut out.
std::string shownName(const std::filesystem::path& path);

/// Opens a file or folder with the program the desktop has for it.
void openInDesktop(const std::filesystem::path& path);

/// Shows a file in the desktop's file manager; opens its folder where there is none that can.
void showInFolder(const std::filesystem::path& path);

/// A target for files of other programs; those that lie on this machine are handed on.
Glib::RefPtr<Gtk::DropTarget> fileDropTarget(const std::function<void(const FilePaths&)>& dropped);

}  // namespace corvel
