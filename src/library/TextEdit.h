#pragma once

#include <cstddef>
#include <string>

namespace corvel {

/// One change of a text: at `offset`, `removed` characters went and `inserted` came. Offsets and
/// lengths count code points.
struct TextEdit {
    std::size_t offset = 0;
    std::size_t removed = 0;
    std::string inserted;

    bool operator==(const TextEdit&) const = default;
};

}  // namespace corvel
