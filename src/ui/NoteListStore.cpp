#include "ui/NoteListStore.h"

namespace corvel {

NoteListStore::NoteListStore(NoteListViewModel& list)
    : Glib::ObjectBase("CorvelNoteListStore"), m_list(list), m_size(list.size()) {}

Glib::RefPtr<NoteListStore> NoteListStore::create(NoteListViewModel& list) {
    return Glib::make_refptr_for_instance(new NoteListStore(list));
}

void NoteListStore::splice(const ListSplice& change) {
    m_size = m_list.size();
    items_changed(static_cast<guint>(change.position), static_cast<guint>(change.removed),
                  static_cast<guint>(change.added));
}

void NoteListStore::spliceAnew(const ListSplice& change) {
    m_gapStart = change.position;
    m_gap = change.added;
    m_size = m_list.size() - m_gap;
    items_changed(static_cast<guint>(change.position), static_cast<guint>(change.removed), 0);
    m_gap = 0;
    splice({change.position, 0, change.added});
}

GType NoteListStore::get_item_type_vfunc() {
    return G_TYPE_OBJECT;
}

guint NoteListStore::get_n_items_vfunc() {
    return static_cast<guint>(m_size);
}

gpointer NoteListStore::get_item_vfunc(guint position) {
    const std::size_t row = position < m_gapStart ? position : position + m_gap;
    if (position >= m_size || row >= m_list.size()) return nullptr;
    return itemOf(m_list.rowAt(row))->gobj_copy();
}

Glib::RefPtr<NoteItem> NoteListStore::itemOf(RowId row) {
    if (const auto found = m_living->find(row); found != m_living->end()) {
        found->second->reference();
        return Glib::make_refptr_for_instance(found->second);
    }
    auto item = NoteItem::create(row, [living = m_living](RowId gone) { living->erase(gone); });
    m_living->emplace(row, item.get());
    return item;
}

}  // namespace corvel
