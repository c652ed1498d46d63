#pragma once

#include "app/editing/BlockIndex.h"
#include "app/editing/EmphasisSpans.h"
#include "app/editing/TextEdit.h"
#include "app/editing/TypingPairs.h"
#include "app/settings/Preferences.h"
#include "platform/ScopedConnection.h"
#include "ui/BufferExcerpt.h"
#include "ui/SignalHandlers.h"

#include <gtkmm/textview.h>

#include <optional>
#include <string>

namespace corvel {

/// Helps with Markdown while it is typed into a text view: pairs of brackets and marks, lists that
/// go on at Enter, Tab in lists, and the commands that mark text. Each change is one undo step.
class EditingController {
public:
    EditingController(Gtk::TextView& view, const Preferences& preferences);
    EditingController(const EditingController&) = delete;
    EditingController& operator=(const EditingController&) = delete;
    ~EditingController();

    void toggleEmphasis(editing::Emphasis kind);
    void cycleHeading();
    void toggleTasks();
    void toggleCodeBlock();
    /// Takes an address from the clipboard, if there is one.
    void toggleLink();

    /// What a line starts in; plain text while a long note is still being read.
    editing::BlockState stateAt(int line);

private:
    /// A selection as it was when a change by the user began: typing deletes it first.
    struct Replaced {
        int begin = 0;
        bool isCursorFirst = false;
        std::string text;
    };

    void followBuffer();
    void addKeys();
    bool keyPressed(guint key, Gdk::ModifierType modifiers);
    bool lineEnded();
    bool indented(bool isDeeper);
    bool offeredToInputMethod();
    editing::Place placeOf(const std::string& text, const editing::Selection& selection);
    bool isEditable() const { return m_view.get_editable(); }
    bool isInFence();
    void apply(const std::optional<editing::TextEdit>& edit, const BufferExcerpt& excerpt);
    void linkWith(const std::string& clipboard);

    static void userActionBegan(GtkTextBuffer* buffer, gpointer self);
    static void userActionEnded(GtkTextBuffer* buffer, gpointer self);
    static void beforeInsert(GtkTextBuffer*, GtkTextIter*, const char*, int, gpointer self);
    static void afterInsert(GtkTextBuffer*, GtkTextIter*, const char*, int, gpointer self);
    static void beforeDelete(GtkTextBuffer*, GtkTextIter*, GtkTextIter*, gpointer self);
    static void afterDelete(GtkTextBuffer*, GtkTextIter*, GtkTextIter*, gpointer self);
    static void backspace(GtkTextView* view, gpointer self);
    bool typed(GtkTextIter* at, std::string_view character);
    bool wrapped(GtkTextIter* at, std::string_view character);
    void rememberLine(const GtkTextIter* at);
    void updateIndex();
    std::string startOfLine(int line) const;

    Gtk::TextView& m_view;
    const Preferences& m_preferences;
    GtkTextBuffer* m_buffer = nullptr;
    editing::BlockIndex m_index;
    SignalHandlers m_bufferSignals;
    SignalHandlers m_viewSignals;
    ScopedConnection m_bufferChanged;
    ScopedConnection m_clipboardLate;
    Glib::RefPtr<Gtk::EventController> m_keys;
    std::optional<Replaced> m_replaced;
    int m_userActions = 0;
    int m_changedLine = 0;
    int m_lineCount = 0;
    bool m_isApplying = false;
    bool m_isPasting = false;
};

}  // namespace corvel
