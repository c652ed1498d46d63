#pragma once

#include "platform/Database.h"

#include <cstdint>
#include <vector>

namespace corvel {

/// The first column of every row that is still to come.
inline std::vector<std::int64_t> keysOf(Query& query) {
    std::vector<std::int64_t> keys;
    while (query.next()) {
        keys.push_back(query.integer(0));
    }
    return keys;
}

}  // namespace corvel
