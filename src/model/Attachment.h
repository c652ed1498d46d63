#pragma once

#include "model/Hash.h"
#include "platform/Uuid.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// A file kept with a note, referred to in its text as `attachment://` and its id.
struct Attachment {
    Uuid id;
    std::string filename;
    std::string mimeType;
    std::vector<std::uint8_t> data;
    std::optional<std::vector<std::uint8_t>> thumbnailData;

    bool operator==(const Attachment&) const = default;
};

}  // namespace corvel

template <>
struct std::hash<corvel::Attachment> {
    std::size_t operator()(const corvel::Attachment& attachment) const noexcept {
        std::size_t seed = std::hash<corvel::Uuid>{}(attachment.id);
        corvel::hashCombine(seed, attachment.filename);
        return seed;
    }
};
