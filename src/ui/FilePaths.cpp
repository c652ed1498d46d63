#include "ui/FilePaths.h"

#include "platform/Handle.h"
#include "ui/ToolkitLanguage.h"

#include <giomm/appinfo.h>
#include <giomm/application.h>
#include <giomm/dbusconnection.h>
#include <glibmm/convert.h>
#include <glibmm/variant.h>

#include <tuple>

namespace corvel {

namespace {

constexpr std::size_t kNameBegin = 26;
constexpr std::size_t kNameEnd = 12;

void appendPath(FilePaths& paths, GFile* file) {
    const Handle<char, g_free> path(g_file_get_path(file));
    if (path) paths.emplace_back(path.get());
}

FilePaths pathsIn(const Glib::ValueBase& dropped) {
    FilePaths paths;
    if (!G_VALUE_HOLDS(dropped.gobj(), GDK_TYPE_FILE_LIST)) return paths;
    const auto* files = static_cast<GSList*>(g_value_get_boxed(dropped.gobj()));
    for (; files != nullptr; files = files->next)
        appendPath(paths, G_FILE(files->data));
    return paths;
}

}  // namespace

FilePaths chosenFiles(const Gtk::FileChooserNative& chooser) {
    FilePaths paths;
    const auto files = chooser.get_files();
    for (guint i = 0; i < files->get_n_items(); ++i) {
        // The classes of files are private to the toolkit: the C++ list model cannot wrap them.
        const GObjectHandle<void> file(
            g_list_model_get_item(const_cast<GListModel*>(files->gobj()), i));
        appendPath(paths, G_FILE(file.get()));
    }
    return paths;
}

void openInDesktop(const std::filesystem::path& path) {
    // What the desktop cannot open it says itself.
    Gio::AppInfo::launch_default_for_uri_async(Glib::filename_to_uri(path.string()),
                                               sessionLaunchContext(), Gio::SlotAsyncReady());
}

void showInFolder(const std::filesystem::path& path) {
    constexpr int kPatience = 5000;  // milliseconds
    const auto application = Gio::Application::get_default();
    const auto bus =
        application ? application->get_dbus_connection() : Glib::RefPtr<Gio::DBus::Connection>();
    if (!bus) return openInDesktop(path.parent_path());
    using Call = std::tuple<std::vector<Glib::ustring>, Glib::ustring>;
    const auto call =
        Glib::Variant<Call>::create({{Glib::filename_to_uri(path.string())}, Glib::ustring()});
    // The program may have been started for this alone: it waits for the answer.
    application->hold();
    bus->call(
        "/org/freedesktop/FileManager1", "org.freedesktop.FileManager1", "ShowItems", call,
        [application, bus, path](const Glib::RefPtr<Gio::AsyncResult>& result) {
            try {
                bus->call_finish(result);
            } catch (const Glib::Error&) {
                openInDesktop(path.parent_path());
            }
            application->release();
        },
        "org.freedesktop.FileManager1", kPatience);
}

std::string shownName(const std::filesystem::path& path) {
    const Glib::ustring name = Glib::filename_display_name(path.filename().string());
    if (name.size() <= kNameBegin + kNameEnd + 1) return name;
    return name.substr(0, kNameBegin) + "…" + name.substr(name.size() - kNameEnd);
}

Glib::RefPtr<Gtk::DropTarget> fileDropTarget(const std::function<void(const FilePaths&)>& dropped) {
    auto target = Gtk::DropTarget::create(GDK_TYPE_FILE_LIST, Gdk::DragAction::COPY);
    target->signal_drop().connect(
        [dropped](const Glib::ValueBase& value, double, double) {
            const auto paths = pathsIn(value);
            if (!paths.empty()) dropped(paths);
            return !paths.empty();
        },
        false);
    return target;
}

}  // namespace corvel
