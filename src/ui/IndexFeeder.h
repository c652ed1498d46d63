#pragma once

#include "library/SearchIndex.h"
#include "platform/ScopedConnection.h"

namespace corvel {

/// Fills the search index in the loop's idle time, in slices nobody feels, and later merges recent
/// edits into it.
class IndexFeeder {
public:
    explicit IndexFeeder(SearchIndex& index) : m_index(index) {}

    void start();

private:
    bool workOnce();
    void rest();

    SearchIndex& m_index;
    ScopedConnection m_work;
};

}  // namespace corvel
