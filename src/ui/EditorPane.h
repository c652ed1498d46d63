#pragma once

#include "app/settings/Preferences.h"
#include "platform/ScopedConnection.h"
#include "themes/ThemeManager.h"
#include "ui/BufferEdits.h"
#include "ui/NoteBuffers.h"

#include <gtkmm/scrolledwindow.h>
#include <gtkmm/textview.h>
#include <sigc++/signal.h>

#include <optional>
#include <string>

namespace corvel {

/// The text of the open note: a source view with Markdown in colours and one undo stack a note.
class EditorPane : public Gtk::ScrolledWindow {
public:
    EditorPane(const Preferences& preferences, ThemeManager& themes);

    /// Shows note `id`; its text is repaired where a buffer cannot hold it. The same note again
    /// keeps cursor and undo when its text is the same.
    void open(const Uuid& id, const std::string& content);
    void close();
    std::string text() const;

    void setReadOnly(bool isReadOnly);
    /// Too large to be coloured and wrapped.
    bool isLarge() const { return m_isLarge; }
    /// Very long lines are shown in pieces; what `signalEdited` tells then counts the breaks, too.
    bool isInPieces() const;
    /// So large that its beginning alone is shown, for reading only.
    bool isPartial() const { return m_isPartial; }
    void setLabel(const std::string& label);
    void focusText() { m_view->grab_focus(); }
    Gtk::TextView& textView() { return *m_view; }
    bool hasTextFocus() const { return m_view->has_focus(); }

    /// The buffer of a note that is perhaps not shown, holding `content`.
    Glib::RefPtr<Gtk::TextBuffer> bufferOf(const Uuid& id, const std::string& content) {
        return m_buffers.bufferFor(id, content);
    }
    /// False for what would be shown in part, for reading only.
    static bool canEdit(const std::string& content);

    /// The user changed the text; cheap.
    sigc::signal<void(const TextEdit&)>& signalEdited() { return m_edits.signalEdited(); }

private:
    void showBuffer(const Glib::RefPtr<Gtk::TextBuffer>& buffer);
    void applyColors();
    void applySpacing();
    void applySize();
    void applyLanguage();
    void applyLanguageSoon();

    const Preferences& m_preferences;
    const ThemeManager& m_themes;
    NoteBuffers m_buffers;
    Gtk::TextView* m_view;
    Glib::RefPtr<Gtk::TextBuffer> m_buffer;
    std::optional<Uuid> m_noteID;
    bool m_isLarge = false;
    bool m_isPartial = false;
    bool m_isLanguageDue = false;
    BufferEdits m_edits;
    ScopedConnection m_themeChanged;
    ScopedConnection m_preferenceChanged;
};

}  // namespace corvel
