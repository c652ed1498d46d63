#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvel {

/// One record of a draft file: what it is, and its bytes. On disk: the size of the bytes (32 bits),
/// a checksum of kind and bytes (64 bits), the kind, the bytes; numbers are little-endian. A record
/// that was not written to its end is told by its size or checksum.
struct DraftRecord {
    enum class Kind : char {
        note = 'N',   ///< the id of the note, 16 bytes: the first record
        base = 'B',   ///< the text as the store had it when the draft began: the second
        text = 'S',   ///< the whole text
        edit = 'E',   ///< offset and removed length (64 bits each), then what was inserted
        title = 'T',  ///< the title that the user typed
    };
    Kind kind;
    std::string_view bytes;
};

/// What stands before the bytes of a record.
std::string headerOf(const DraftRecord& record);
void appendRecord(std::string& file, const DraftRecord& record);
/// The record at the start of `file`, which is moved behind it; none when it is damaged.
std::optional<DraftRecord> takeRecord(std::string_view& file);

void appendNumber64(std::string& bytes, std::uint64_t number);
/// `bytes` must hold 8 at least.
std::uint64_t takeNumber64(std::string_view& bytes);

}  // namespace corvel
