#pragma once

#include "model/Hash.h"
#include "platform/Uuid.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// A folder of the library with its sub-folders, in ascending `sortOrder`.
struct Folder {
    Uuid id;
    std::string name;
    std::int32_t sortOrder = 0;
    std::optional<Uuid> parentID;  ///< absent for a top-level folder
    std::vector<Folder> children;
    std::int64_t noteCount = 0;  ///< notes directly in it, neither trashed nor archived

    bool operator==(const Folder&) const = default;
};

}  // namespace corvel

template <>
struct std::hash<corvel::Folder> {
    std::size_t operator()(const corvel::Folder& folder) const noexcept {
        std::size_t seed = std::hash<corvel::Uuid>{}(folder.id);
        corvel::hashCombine(seed, folder.name);
        return seed;
    }
};
