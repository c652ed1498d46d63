#pragma once

#include "library/NoteSummary.h"

#include <glibmm/object.h>

#include <functional>

namespace corvel {

/// One row of the note list as the list widget sees it: an identity, nothing else.
class NoteItem : public Glib::Object {
public:
    using Gone = std::function<void(RowId)>;

    static Glib::RefPtr<NoteItem> create(RowId row, Gone gone);
    ~NoteItem() override;

    RowId row() const { return m_row; }

private:
    NoteItem(RowId row, Gone gone);

    RowId m_row;
    Gone m_gone;
};

}  // namespace corvel
