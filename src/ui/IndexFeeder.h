#pragma once

#include "app/PaletteViewModel.h"
#include "library/SearchIndex.h"
#include "platform/ScopedConnection.h"

namespace corvel {

/// Fills the search index and then the note switcher in the loop's idle time, in slices nobody
/// feels, and later merges recent edits into the index.
class IndexFeeder {
public:
    IndexFeeder(SearchIndex& index, PaletteViewModel& palette)
        : m_index(index), m_palette(palette) {}

    void start();

private:
    bool workOnce();
    void rest();

    SearchIndex& m_index;
    PaletteViewModel& m_palette;
    ScopedConnection m_work;
};

}  // namespace corvel
