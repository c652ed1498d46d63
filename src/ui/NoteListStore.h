#pragma once

#include "library/NoteListViewModel.h"
#include "ui/NoteItem.h"

#include <giomm/listmodel.h>

#include <memory>
#include <unordered_map>

namespace corvel {

/// The note list as a list model: an item is made when the widget asks for it, and while it lives a
/// note has one item only, so that selection and rows follow a note that moves.
///
/// The widgets may know of the list's first rows only: a list view makes some 200 rows of whatever
/// it is told of, however few fit in the window. So a new list begins with a screenful and grows.
class NoteListStore : public Gio::ListModel, public Glib::Object {
public:
    /// `list` must outlive the store.
    static Glib::RefPtr<NoteListStore> create(NoteListViewModel& list);

    /// To be called after the view model's rows have changed.
    void splice(const ListSplice& change);
    /// The same, told as going and coming, so that nobody looks for the gone among those that came.
    void spliceAnew(const ListSplice& change);
    /// Whether the widgets know of all rows.
    bool isWhole() const { return m_size >= m_list.size(); }
    /// Tells of some more rows.
    void grow();
    /// Tells of the row at `position`, of those before it and some after.
    void growPast(std::size_t position);

protected:
    GType get_item_type_vfunc() override;
    guint get_n_items_vfunc() override;
    gpointer get_item_vfunc(guint position) override;

private:
    using Living = std::unordered_map<RowId, NoteItem*>;

    explicit NoteListStore(NoteListViewModel& list);
    Glib::RefPtr<NoteItem> itemOf(RowId row);
    void growTo(std::size_t size);

    NoteListViewModel& m_list;
    /// Shared with the items, which may outlive the store in the widgets' hands.
    std::shared_ptr<Living> m_living = std::make_shared<Living>();
    /// How many rows the widgets were told of, from the first on.
    std::size_t m_size;
    /// Rows of the view model that the widgets do not know of yet: from where, and how many.
    std::size_t m_gapStart = 0;
    std::size_t m_gap = 0;
};

}  // namespace corvel
