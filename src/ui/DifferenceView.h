#pragma once

#include "app/editing/DifferencePieces.h"
#include "app/settings/Localisation.h"
#include "ui/SignalHandlers.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/textchildanchor.h>
#include <gtkmm/textview.h>

#include <string>
#include <vector>

namespace corvel {

/// A text with what became of it: what was removed is struck through, what was added underlined,
/// both on a coloured ground; long stretches without a change are folded behind a button. The
/// changes can be gone through one by one (Alt+Down, Alt+Up), each then told in words to assistive
/// technology.
class DifferenceView : public Gtk::Box {
public:
    explicit DifferenceView(const Localisation& texts);  // must outlive the view

    void show(const std::string& before, const std::string& after);
    void clear();
    std::size_t changeCount() const { return m_changes.size(); }
    /// Goes `step` changes on, around the ends, selects that change and scrolls to it.
    void go(int step);
    void relabel();
    Gtk::TextView& textView() { return m_text; }
    Gtk::ScrolledWindow& scroller() { return m_scroller; }
    /// Those of the stretches that are folded, from top to bottom.
    std::vector<Gtk::Button*> foldButtons() const;

private:
    /// Where a change stands in the buffer, in characters, and what it was.
    struct Change {
        int begin = 0;
        int end = 0;
        std::string removed;
        std::string added;
    };

    /// A stretch without a change, and the button that stands for it.
    struct Fold {
        Glib::RefPtr<Gtk::TextChildAnchor> anchor;
        Gtk::Button* button = nullptr;
        std::string text;
        std::size_t lines = 0;
    };

    void build();
    void addKeys();
    void makeTags();
    void applyColors();
    void append(const editing::DifferencePiece& piece);
    void appendFold(const editing::DifferencePiece& piece);
    void label(const Fold& fold);
    void unfold(Gtk::Button* button);
    void tell();

    const Localisation& m_texts;
    Gtk::Box m_bar;
    Gtk::Label m_status;
    Gtk::Button m_previous;
    Gtk::Button m_next;
    Gtk::ScrolledWindow m_scroller;
    Gtk::TextView m_text;
    Glib::RefPtr<Gtk::TextTag> m_removedTag;
    Glib::RefPtr<Gtk::TextTag> m_addedTag;
    Glib::RefPtr<Gtk::TextTag> m_foldedTag;
    std::vector<Change> m_changes;
    std::vector<Fold> m_folds;
    int m_current = -1;  // none yet
    SignalHandlers m_styleChanged;
};

}  // namespace corvel
