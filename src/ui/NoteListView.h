#pragma once

#include "app/Session.h"
#include "ui/NoteListStore.h"
#include "ui/NoteRow.h"

#include <gtkmm/listitem.h>
#include <gtkmm/listview.h>
#include <gtkmm/multiselection.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/signallistitemfactory.h>

#include <optional>
#include <set>
#include <vector>

namespace corvel {

/// The rows of the note list: keeps selection, focus and scroll in step with the view model and the
/// application's state.
class NoteListView : public Gtk::ScrolledWindow {
public:
    explicit NoteListView(Session& session);

    /// The selected notes in list order.
    std::vector<Uuid> selectedNotes() const;
    void focusSelected();
    /// Focuses the list; its first note is selected if none is.
    void enter();
    /// Reads every visible row again.
    void refreshRows();
    /// Runs an operation by which the user may take the selected notes off the list: the next row
    /// is selected then.
    void removing(const std::function<void()>& operation);

    Gtk::ListView& rows() { return m_rows; }
    /// The row's rectangle in coordinates of `rows()`; of the focused row, or the first selected.
    Gdk::Rectangle focusedRectangle() const;
    /// Selects the row under the pointer unless it is selected already; false when there is none.
    bool selectAt(double x, double y);

    sigc::signal<void()>& signalActivated() { return m_activated; }

private:
    using Item = Glib::RefPtr<Gtk::ListItem>;
    /// What the rows on show belong to.
    struct Shown {
        SidebarFilter filter;
        SortOption sort = SortOption::modifiedDate;
        std::string query;
        bool operator==(const Shown&) const = default;
    };

    Shown current() const;
    void setUpFactory();
    void setUpRow(const Item& item);
    void bindRow(const Item& item);
    Glib::RefPtr<Gdk::ContentProvider> dragContent(const NoteRow* row) const;
    std::optional<guint> positionOf(const NoteRow* row) const;
    NoteRow* rowAt(guint position) const;

    void selectionChanged();
    void addToSelection(const Uuid& id);
    void tellCount();
    void stateSelectionChanged();
    void spliced(const ListSplice& change);
    void replaced();
    void keepSelection(std::size_t near, bool hadSelection);
    bool hasLeftForGood() const;
    void selectRow(std::size_t position);
    void selectInList(std::size_t position);
    void followKeys();
    void select(std::size_t position);
    void scrollTo(std::size_t position);
    void scrollLater();
    void focusRow(std::size_t position);
    void askForMore();
    void growLater();
    void refreshAtMidnight();

    Session& m_session;
    Glib::RefPtr<NoteListStore> m_store;
    Glib::RefPtr<Gtk::MultiSelection> m_selection;
    Gtk::ListView m_rows;
    std::set<Item> m_bound;
    std::optional<RowId> m_selectedRow;  ///< when exactly one is selected
    bool m_isUpdating = false;
    bool m_isGrowing = false;
    bool m_isScrollDue = false;
    /// Where the list first changed during an operation of the user's, if it did.
    bool m_isRemoving = false;
    std::optional<std::size_t> m_removedAt;
    Shown m_shown;
    ScopedConnection m_midnight;
    std::vector<ScopedConnection> m_connections;
    sigc::signal<void()> m_activated;
};

}  // namespace corvel
