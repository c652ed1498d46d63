#include "ui/FilePreviewWindow.h"

#include "app/texts/PageTexts.h"
#include "library/ImportedFile.h"
#include "platform/DistantVolumes.h"
#include "ui/Accessible.h"

#include <giomm/file.h>
#include <glibmm/convert.h>
#include <glibmm/main.h>

#include <chrono>
#include <utility>

namespace corvel {

namespace {

constexpr std::size_t kLargest = 4'000'000;
// Programs save in several steps.
constexpr std::chrono::milliseconds kRest{150};
constexpr const char* kPage = "page";
constexpr const char* kProblem = "problem";

}  // namespace

FilePreviewWindow::FilePreviewWindow(Session& session, std::filesystem::path path)
    : PageWindow(session, "filePreviewWindow", {820, 860})
    , m_path(std::move(path))
    , m_page(session, {{}, [this] { return m_path.parent_path(); }}) {
    m_stack.add(m_page, kPage);
    m_stack.add(m_problem.widget(), kProblem);
    set_child(m_stack);
    m_import.signal_clicked().connect([this] {
        if (onImport) onImport(m_path);
    });
    header().packStart(m_import);
    read();
    FilePreviewWindow::relabel();
    m_page.focusPage();
}

FilePreviewWindow::~FilePreviewWindow() {
    unset_child();
}

void FilePreviewWindow::follow() {
    try {
        m_monitor = Gio::File::create_for_path(m_path.string())
                        ->monitor_file(Gio::FileMonitorFlags::WATCH_MOVES);
    } catch (const Glib::Error&) {
        return;  // it is shown as it is now
    }
    m_monitor->signal_changed().connect([this](const auto&, const auto&, Gio::FileMonitor::Event) {
        m_reading = Glib::signal_timeout().connect(
            [this] {
                read();
                return false;
            },
            static_cast<unsigned>(kRest.count()));
    });
}

void FilePreviewWindow::read() {
    m_state = load();
    showState();
}

FilePreviewWindow::State FilePreviewWindow::load() {
    if (!distantVolumes::answersFor(m_path)) return State::unreadable;
    if (!m_monitor) follow();
    std::error_code error;
    if (!std::filesystem::exists(m_path, error)) return State::missing;
    if (std::filesystem::is_regular_file(m_path, error) &&
        std::filesystem::file_size(m_path, error) > kLargest) {
        return State::tooLarge;
    }
    auto found = ImportedFile::read(m_path, kLargest);
    auto* file = std::get_if<ImportedFile>(&found);
    if (file == nullptr) return State::unreadable;
    const auto text = decodedText(std::move(file->bytes));
    if (!text) return State::notText;
    m_page.show(*text);
    return State::shown;
}

void FilePreviewWindow::showState() {
    const auto& texts = session().texts;
    m_import.set_sensitive(m_state == State::shown || m_state == State::tooLarge);
    m_stack.set_visible_child(m_state == State::shown ? kPage : kProblem);
    const auto say = [&](const Text& title, const Text& detail) {
        m_problem.set(
            "dialog-warning-symbolic", texts(title),
            texts.format(detail, {Glib::filename_display_name(m_path.filename().string())}));
    };
    switch (m_state) {
        case State::shown:
            return;
        case State::missing:
            return say(texts::fileIsMissing, texts::fileIsMissingDetail);
        case State::tooLarge:
            return say(texts::fileIsTooLarge, texts::fileIsTooLargeDetail);
        case State::notText:
            return say(texts::fileIsNotText, texts::fileIsNotTextDetail);
        case State::unreadable:
            return say(texts::fileIsUnreadable, texts::fileIsUnreadableDetail);
    }
}

void FilePreviewWindow::relabel() {
    const auto& texts = session().texts;
    set_title(Glib::filename_display_name(m_path.filename().string()));
    m_import.set_label(texts(texts::importThisFile));
    m_import.set_tooltip_text(texts(texts::importThisFileTooltip));
    m_page.relabel();
    m_page.setLabel(texts(texts::preview));
    showState();
}

}  // namespace corvel
