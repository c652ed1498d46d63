#include "ui/NoteListStore.h"

#include <algorithm>

namespace corvel {

namespace {

/// As many rows as most windows are high; a higher one is full with the next frame.
constexpr std::size_t kScreenful = 12;
constexpr std::size_t kGrowth = 20;
/// From here on the list view makes no more rows than it has.
constexpr std::size_t kMadeAtOnce = 240;

}  // namespace

NoteListStore::NoteListStore(NoteListViewModel& list)
    : Glib::ObjectBase("CorvelNoteListStore")
    , m_list(list)
    , m_size(std::min(list.size(), kScreenful)) {}

Glib::RefPtr<NoteListStore> NoteListStore::create(NoteListViewModel& list) {
    return Glib::make_refptr_for_instance(new NoteListStore(list));
}

void NoteListStore::splice(const ListSplice& change) {
    if (change.position > m_size) return;  // among the rows that are still to be told of
    const std::size_t removed = std::min(change.removed, m_size - change.position);
    const bool isTail = change.position + removed == m_size;
    const std::size_t added = isTail ? std::min(change.added, kScreenful) : change.added;
    m_size = m_size - removed + added;
    items_changed(static_cast<guint>(change.position), static_cast<guint>(removed),
                  static_cast<guint>(added));
}

void NoteListStore::spliceAnew(const ListSplice& change) {
    if (change.position > m_size) return;
    const std::size_t removed = std::min(change.removed, m_size - change.position);
    m_gapStart = change.position;
    m_gap = change.added;
    m_size -= removed;
    items_changed(static_cast<guint>(change.position), static_cast<guint>(removed), 0);
    m_gap = 0;
    splice({change.position, 0, change.added});
}

void NoteListStore::grow() {
    const std::size_t more = m_size + kGrowth;
    growTo(more < kMadeAtOnce ? more : m_list.size());
}

void NoteListStore::growPast(std::size_t position) {
    if (position >= m_size) growTo(std::min(position, m_list.size()) + kScreenful);
}

void NoteListStore::growTo(std::size_t size) {
    const std::size_t before = m_size;
    m_size = std::max(before, std::min(size, m_list.size()));
    if (m_size == before) return;
    items_changed(static_cast<guint>(before), 0, static_cast<guint>(m_size - before));
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
