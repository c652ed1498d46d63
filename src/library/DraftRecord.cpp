#include "library/DraftRecord.h"

#include <bit>
#include <cstring>

namespace corvel {

namespace {

static_assert(std::endian::native == std::endian::little, "numbers are written as they lie");

constexpr std::size_t kHeader = 4 + 8 + 1;

std::uint64_t mixed(std::uint64_t hash, std::uint64_t word) {
    hash = (hash ^ word) * 0x9E3779B97F4A7C15ULL;
    return hash ^ (hash >> 32U);
}

// A word at a time: a base text may have ten megabytes.
std::uint64_t checksum(char kind, std::string_view bytes) {
    std::uint64_t hash = mixed(static_cast<unsigned char>(kind), bytes.size());
    while (bytes.size() >= 8) {
        hash = mixed(hash, takeNumber64(bytes));
    }
    std::uint64_t rest = 0;
    std::memcpy(&rest, bytes.data(), bytes.size());
    return mixed(hash, rest);
}

}  // namespace

void appendNumber64(std::string& bytes, std::uint64_t number) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

std::uint64_t takeNumber64(std::string_view& bytes) {
    std::uint64_t number = 0;
    std::memcpy(&number, bytes.data(), sizeof number);
    bytes.remove_prefix(sizeof number);
    return number;
}

std::string headerOf(const DraftRecord& record) {
    const auto size = static_cast<std::uint32_t>(record.bytes.size());
    const char kind = static_cast<char>(record.kind);
    std::string header(reinterpret_cast<const char*>(&size), sizeof size);
    appendNumber64(header, checksum(kind, record.bytes));
    return header += kind;
}

void appendRecord(std::string& file, const DraftRecord& record) {
    file += headerOf(record);
    file += record.bytes;
}

std::optional<DraftRecord> takeRecord(std::string_view& file) {
    if (file.size() < kHeader) return std::nullopt;
    std::string_view rest = file;
    std::uint32_t size = 0;
    std::memcpy(&size, rest.data(), sizeof size);
    rest.remove_prefix(sizeof size);
    const std::uint64_t expected = takeNumber64(rest);
    const char kind = rest.front();
    rest.remove_prefix(1);
    if (rest.size() < size) return std::nullopt;
    const std::string_view bytes = rest.substr(0, size);
    if (checksum(kind, bytes) != expected) return std::nullopt;
    file = rest.substr(size);
    return DraftRecord{static_cast<DraftRecord::Kind>(kind), bytes};
}

}  // namespace corvel
