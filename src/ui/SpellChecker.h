#pragma once

#include "app/editing/BlockState.h"
#include "app/settings/Preferences.h"
#include "platform/Handle.h"
#include "platform/ScopedConnection.h"
#include "ui/SignalHandlers.h"
#include "ui/SpellDictionaries.h"

#include <gtkmm/textview.h>
#include <gtksourceview/gtksource.h>

#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// Underlines misspelled words of a text view, as long as the preference asks for it: the lines in
/// sight, once each and again when they change, while the program is idle. The word that is being
/// typed is left alone.
class SpellChecker {
public:
    using StateOfLine = std::function<editing::BlockState(int line)>;

    SpellChecker(Gtk::TextView& view, const Preferences& preferences, StateOfLine stateOfLine);
    SpellChecker(const SpellChecker&) = delete;
    SpellChecker& operator=(const SpellChecker&) = delete;
    ~SpellChecker();

    struct Mistake {
        int begin = 0;  ///< characters from the start of the text
        int end = 0;
        std::string word;
        std::vector<std::string> suggestions;
    };
    /// The underlined word at a position of the text, if there is one there.
    std::optional<Mistake> mistakeAt(const GtkTextIter& position);
    void add(const std::string& word);
    void ignore(const std::string& word);

private:
    void followBuffer();
    void followScrolling();
    void checkAnew();
    void lineChanged(const GtkTextIter& begin, const GtkTextIter& end);
    void cursorMoved();
    void schedule();
    bool work();
    bool hasDictionaries();
    bool checkNextLine(GtkTextIter& line, const GtkTextIter& end);
    void checkLine(const GtkTextIter& begin, const GtkTextIter& end);
    bool isBeingTyped(const GtkTextIter& begin, const GtkTextIter& end);
    GtkTextTag* tag() const;

    Gtk::TextView& m_view;
    const Preferences& m_preferences;
    StateOfLine m_stateOfLine;
    GtkTextBuffer* m_buffer = nullptr;
    GObjectHandle<GtkSourceRegion> m_unchecked;
    std::future<std::unique_ptr<SpellDictionaries>> m_loading;
    std::unique_ptr<SpellDictionaries> m_dictionaries;
    bool m_isTyping = false;  ///< the last thing that happened was a change of the text
    bool m_leftWordOut = false;
    SignalHandlers m_bufferSignals;
    ScopedConnection m_bufferChanged;
    ScopedConnection m_adjustmentChanged;
    ScopedConnection m_scrolled;
    ScopedConnection m_resized;
    ScopedConnection m_preferenceChanged;
    ScopedConnection m_work;
};

}  // namespace corvel
