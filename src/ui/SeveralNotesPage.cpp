#include "ui/SeveralNotesPage.h"

#include "app/Texts.h"
#include "app/texts/SelectionTexts.h"

#include <string>

namespace corvel {

namespace {

void setUp(Gtk::Button& button, CommandID id, Gtk::Box& column) {
    button.set_action_name(std::string("win.") + AppCommands::command(id).actionName);
    button.add_css_class("pill");
    column.append(button);
}

}  // namespace

SeveralNotesPage::SeveralNotesPage(Session& session) : m_session(session) {
    auto& column = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 12);
    column.set_halign(Gtk::Align::CENTER);
    setUp(m_export, CommandID::exportNote, column);
    setUp(m_archive, CommandID::toggleArchive, column);
    setUp(m_trash, CommandID::moveToTrash, column);
    m_trash.add_css_class("destructive-action");
    m_page.setChild(column);
    m_page.widget().set_vexpand(true);
}

void SeveralNotesPage::refresh() {
    const auto& say = m_session.texts;
    const auto count = static_cast<std::int64_t>(m_session.state.selectedCount.get());
    m_page.set("edit-select-all-symbolic", say.format(texts::severalSelected, {say.notes(count)}),
               say(texts::severalSelectedDetail));
    const auto kind = m_session.list.filter().kind;
    const bool isTrash = kind == SidebarFilter::Kind::trash && !m_session.list.isSearching();
    const bool isArchive = kind == SidebarFilter::Kind::archived && !m_session.list.isSearching();
    m_export.set_label(say(texts::exportSelected));
    m_archive.set_label(say(isArchive ? texts::fromArchive : texts::toArchive));
    m_archive.set_visible(!isTrash);
    m_trash.set_label(say(isTrash ? texts::deletePermanently : texts::moveToTrash));
}

}  // namespace corvel
