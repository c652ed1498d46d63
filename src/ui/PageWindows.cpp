#include "ui/PageWindows.h"

#include "app/Texts.h"
#include "app/texts/PageTexts.h"
#include "library/Notifications.h"

#include <gtkmm/filefilter.h>

#include <algorithm>
#include <any>
#include <array>
#include <utility>

namespace corvel {

namespace {

constexpr std::array kPatterns{"*.md", "*.markdown", "*.mdown", "*.mkd", "*.txt"};

}  // namespace

PageWindows::PageWindows(Session& session, Gtk::Window& parent, Import import)
    : m_session(session), m_parent(parent), m_import(std::move(import)) {
    auto& center = session.notifications;
    m_connections.push_back(
        center.observe(notifications::openReaderMode, [this](const std::any&) { openReader(); }));
    m_connections.push_back(
        center.observe(notifications::openMarkdownPreview, [this](const std::any& payload) {
            if (const auto* path = std::any_cast<std::filesystem::path>(&payload)) openFile(*path);
        }));
}

template <typename Window>
void PageWindows::present(std::unique_ptr<Window>& window) {
    if (!window) window = std::make_unique<Window>(m_session);
    window->open();
}

void PageWindows::openReader() {
    present(m_reader);
}

void PageWindows::openGuide() {
    present(m_guide);
}

void PageWindows::chooseFile() {
    const auto& texts = m_session.texts;
    m_chooser = Gtk::FileChooserNative::create(texts(texts::choosePreviewFile), m_parent,
                                               Gtk::FileChooser::Action::OPEN,
                                               texts(texts::preview), texts(texts::cancel));
    m_chooser->set_modal(true);
    const auto filter = Gtk::FileFilter::create();
    filter->set_name(texts(texts::markdownOnly));
    for (const auto* pattern : kPatterns) {
        filter->add_pattern(pattern);
    }
    m_chooser->add_filter(filter);
    m_chooser->signal_response().connect([this](int response) {
        const auto held = std::exchange(m_chooser, {});
        held->hide();
        if (response == GTK_RESPONSE_ACCEPT) openFile(held->get_file()->get_path());
    });
    m_chooser->show();
}

void PageWindows::openFile(const std::filesystem::path& path) {
    // Closed ones make room; the file that is open already comes forward.
    std::erase_if(m_files, [](const auto& window) { return !window->is_visible(); });
    const auto open =
        std::ranges::find(m_files, path, [](const auto& window) { return window->path(); });
    if (open != m_files.end()) return (*open)->present();
    auto window = std::make_unique<FilePreviewWindow>(m_session, path);
    window->onImport = m_import;
    window->present();
    m_files.push_back(std::move(window));
}

void PageWindows::closeAll() {
    m_reader.reset();
    m_guide.reset();
    m_files.clear();
}

}  // namespace corvel
