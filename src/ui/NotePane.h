#pragma once

#include "app/Session.h"
#include "ui/EditorPane.h"
#include "ui/EditorTools.h"
#include "ui/LinkedFileBar.h"
#include "ui/NoteHeader.h"
#include "ui/PreviewView.h"
#include "ui/ScrollFollower.h"
#include "ui/SeveralNotesPage.h"
#include "ui/StatusLine.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/entry.h>
#include <gtkmm/label.h>
#include <gtkmm/paned.h>
#include <gtkmm/revealer.h>
#include <gtkmm/stack.h>

#include <optional>
#include <vector>

namespace corvel {

/// The right side of the main window: the open note with its title, editor and preview, or an empty
/// state.
class NotePane : public Gtk::Box {
public:
    /// The session must outlive the pane.
    NotePane(Session& session, LinkedFileBar::Callbacks linkedFile);
    ~NotePane() override;

    Gtk::Button& sidebarButton() { return m_header.sidebarButton(); }
    void setListHidden(bool isHidden) { m_header.setListHidden(isHidden); }
    void focusEditor();
    void focusTitle();
    EditorPane& editor() { return m_editor; }
    /// One of the commands that find and replace in the note.
    void find(CommandID command) { m_tools.find(command); }
    bool hasUnsavedText() const { return m_session.editor.isEdited(); }
    /// For the next start.
    void rememberScroll() const;
    Gtk::Widget& headerBar() { return m_header.bar().widget(); }
    void setShowsWindowControls(bool shows) { m_header.bar().setWindowControls(false, shows); }

private:
    void build();
    void buildTrashBar();
    void buildEmptyState();
    void labelEmptyState();
    void showPage();
    void follow();
    void followTitleKeys();
    void followScrolling();
    void noteOpened();
    void noteStateChanged();
    double placeOf(const Note& note) const;
    void contentEdited(const TextEdit& edit);
    void titleChanged();
    void render(const std::string& markdown);
    void applyMode();
    void relabel();
    std::string statusNotice() const;

    Session& m_session;
    NoteHeader m_header;
    Gtk::Stack m_stack;
    Gtk::Box m_note;
    Gtk::Entry m_title;
    Gtk::Revealer m_trashBar;
    Gtk::Label m_trashText;
    Gtk::Button m_restore;
    LinkedFileBar m_fileBar;
    Gtk::Paned m_body;
    EditorPane m_editor;
    ScrollFollower m_editorScroll{m_editor.get_vadjustment()};
    EditorTools m_tools;
    PreviewView m_preview;
    StatusLine m_status;
    adw::StatusPage m_empty;
    Gtk::Button m_create;
    SeveralNotesPage m_several;

    std::optional<Uuid> m_shownID;
    bool m_isFilling = false;  ///< the pane itself writes the title
    bool m_isAnother = false;  ///< the next rendering is another note's
    bool m_hasOpened = false;  ///< a note in this run
    double m_place = 0;        ///< where the open note was opened
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
