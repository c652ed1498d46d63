#pragma once

#include "app/Session.h"
#include "ui/EditingController.h"
#include "ui/EditorMenu.h"
#include "ui/EditorPane.h"
#include "ui/FindController.h"
#include "ui/SpellChecker.h"

#include <gtkmm/box.h>

#include <vector>

namespace corvel {

/// The editor's text with what helps at it: the bar to find and replace, typing help, the Format
/// commands, spelling and the context menu.
class EditorTools : public Gtk::Box {
public:
    EditorTools(Session& session, EditorPane& editor);  // both must outlive this

    /// Not part of this: it stands above editor and preview.
    FindBar& findBar() { return m_bar; }
    void relabel() { m_find.relabel(); }
    /// Find, Replace, Find Next or Find Previous; the editor is shown first.
    void find(CommandID command);

private:
    void observeFormats();

    Session& m_session;
    FindBar m_bar;
    EditingController m_editing;
    SpellChecker m_spelling;
    FindController m_find;
    EditorMenu m_menu;
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
