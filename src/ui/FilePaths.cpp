#include "ui/FilePaths.h"

#include "platform/Handle.h"

namespace corvel {

std::vector<std::filesystem::path> pathsOf(Gtk::FileChooserNative& chooser) {
    std::vector<std::filesystem::path> paths;
    const auto files = chooser.get_files();
    for (guint i = 0; i < files->get_n_items(); ++i) {
        // The classes of files are private to the toolkit: the C++ list model cannot wrap them.
        const GObjectHandle<void> file(g_list_model_get_item(files->gobj(), i));
        const Handle<char, g_free> path(g_file_get_path(G_FILE(file.get())));
        if (path) paths.emplace_back(path.get());
    }
    return paths;
}

}  // namespace corvel
