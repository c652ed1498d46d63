#pragma once

#include "ui/FilePreviewWindow.h"
#include "ui/GuideWindow.h"
#include "ui/ReaderWindow.h"

#include <gtkmm/filechoosernative.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace corvel {

/// The windows beside the main one that show a rendered page: made when they are first asked for,
/// gone with their owner.
class PageWindows {
public:
    using Import = std::function<void(const std::filesystem::path&)>;

    /// `session` and `parent` must outlive this. `import` takes a file into the library.
    PageWindows(Session& session, Gtk::Window& parent, Import import);

    void openReader();
    void openGuide();
    void chooseFile();
    void openFile(const std::filesystem::path& path);
    void closeAll();

private:
    template <typename Window>
    void present(std::unique_ptr<Window>& window);

    Session& m_session;
    Gtk::Window& m_parent;
    Import m_import;
    std::unique_ptr<ReaderWindow> m_reader;
    std::unique_ptr<GuideWindow> m_guide;
    std::vector<std::unique_ptr<FilePreviewWindow>> m_files;
    Glib::RefPtr<Gtk::FileChooserNative> m_chooser;
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
