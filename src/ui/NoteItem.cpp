#include "ui/NoteItem.h"

#include <utility>

namespace corvel {

NoteItem::NoteItem(RowId row, Gone gone)
    : Glib::ObjectBase("CorvelNoteItem"), m_row(row), m_gone(std::move(gone)) {}

NoteItem::~NoteItem() {
    m_gone(m_row);
}

Glib::RefPtr<NoteItem> NoteItem::create(RowId row, Gone gone) {
    return Glib::make_refptr_for_instance(new NoteItem(row, std::move(gone)));
}

}  // namespace corvel
