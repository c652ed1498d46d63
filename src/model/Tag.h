#pragma once

#include "model/Hash.h"
#include "platform/Uuid.h"

#include <string>
#include <vector>

namespace corvel {

/// A label written in the text of notes, for example projects/work.
struct Tag {
    Uuid id;
    std::string name;      ///< the last segment of the path
    std::string fullPath;  ///< segments joined by "/", without the leading "#"
    std::vector<Tag> children;

    bool operator==(const Tag&) const = default;
};

}  // namespace corvel

template <>
struct std::hash<corvel::Tag> {
    std::size_t operator()(const corvel::Tag& tag) const noexcept {
        std::size_t seed = std::hash<corvel::Uuid>{}(tag.id);
        corvel::hashCombine(seed, tag.fullPath);
        return seed;
    }
};
