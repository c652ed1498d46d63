#pragma once

#include "library/NoteState.h"

#include <cstdint>
#include <map>
#include <string_view>

namespace corvel {

/// What changes of notes add to the kept counts: summed up here, so that many notes of an import
/// write a count once.
class CountChanges {
public:
    /// A note's share was `before` and is `after` now.
    void add(const NoteState& before, const NoteState& after);
    /// Adds the sums to the store's counts and begins anew.
    void write(Database& database);

private:
    using Sums = std::map<std::int64_t, std::int64_t>;

    void count(const char* counter, bool before, bool after);

    std::map<std::string_view, std::int64_t> m_counters;
    Sums m_folders;
    Sums m_tags;
};

}  // namespace corvel
