#pragma once

#include "library/NoteListViewModel.h"
#include "ui/NoteItem.h"

#include <giomm/listmodel.h>

#include <memory>
#include <unordered_map>

namespace corvel {

/// The note list as a list model: an item is made when the widget asks for it, and while it lives a
/// note has one item only, so that selection and rows follow a note that moves.
class NoteListStore : public Gio::ListModel, public Glib::Object {
public:
    /// `list` must outlive the store.
    static Glib::RefPtr<NoteListStore> create(NoteListViewModel& list);

    /// To be called after the view model's rows have changed.
    void splice(const ListSplice& change);
    /// The same, told as going and coming, so that nobody looks for the gone among those that came.
    void spliceAnew(const ListSplice& change);

protected:
    GType get_item_type_vfunc() override;
    guint get_n_items_vfunc() override;
    gpointer get_item_vfunc(guint position) override;

private:
    using Living = std::unordered_map<RowId, NoteItem*>;

    explicit NoteListStore(NoteListViewModel& list);
    Glib::RefPtr<NoteItem> itemOf(RowId row);

    NoteListViewModel& m_list;
    /// Shared with the items, which may outlive the store in the widgets' hands.
    std::shared_ptr<Living> m_living = std::make_shared<Living>();
    /// What the widgets were told: between a change and its signal the two may differ.
    std::size_t m_size;
    /// Rows of the view model that the widgets do not know of yet: from where, and how many.
    std::size_t m_gapStart = 0;
    std::size_t m_gap = 0;
};

}  // namespace corvel
