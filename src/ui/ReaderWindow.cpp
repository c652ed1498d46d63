#include "ui/ReaderWindow.h"

#include "app/Texts.h"
#include "app/texts/PageTexts.h"

namespace corvel {

namespace {

// Stronger than the page's own margins, which stand behind it. The padding is part of the column.
constexpr const char* kColumn =
    "\nhtml body { box-sizing: content-box; max-width: 700px; margin: 0 auto; padding: 32px 32px "
    "96px; }\n";

}  // namespace

ReaderWindow::ReaderWindow(Session& session)
    : PageWindow(session, "readerWindow", {860, 900})
    , m_page(session, {kColumn, folderOfOpenFile(session)}) {
    set_child(m_page);
    auto& editor = session.editor;
    m_connections.emplace_back(editor.signalOpened().connect([this] { noteOpened(); }));
    m_connections.emplace_back(editor.signalDerivedChanged().connect([this] { relabel(); }));
    m_connections.emplace_back(editor.signalRender().connect([this](const std::string& text) {
        if (is_visible()) m_page.show(text);
    }));
    ReaderWindow::relabel();
}

ReaderWindow::~ReaderWindow() {
    unset_child();
}

void ReaderWindow::open() {
    session().editor.save();  // what was typed last belongs to the page
    const auto& note = session().editor.note();
    if (!note) return;
    relabel();
    m_page.show(note->content, session().editor.scroll().scrollPercent());
    present();
    m_page.focusPage();
}

void ReaderWindow::noteOpened() {
    if (!is_visible()) return;
    if (!session().editor.note()) return close();
    m_page.show(session().editor.note()->content, session().editor.scroll().scrollPercent());
    relabel();
}

void ReaderWindow::relabel() {
    const auto& texts = session().texts;
    const std::string title = session().editor.title();
    set_title(title.empty() ? texts(texts::untitled) : title);
    m_page.relabel();
    m_page.setLabel(texts(texts::readerTitle));
}

}  // namespace corvel
