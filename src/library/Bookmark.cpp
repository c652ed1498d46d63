#include "library/Bookmark.h"

#include "platform/Handle.h"

#include <glib.h>

#include <algorithm>
#include <cstddef>
#include <string>

namespace corvel {

namespace {

constexpr std::string_view kMark = "CVBM";
constexpr std::uint64_t kVersion = 1;
constexpr std::size_t kNumbers = 6;
constexpr std::size_t kNumberSize = 8;
constexpr std::size_t kHeadSize =
    kMark.size() + kNumbers * kNumberSize + 2 * std::tuple_size_v<TextHash>;

void appendNumber(std::vector<std::uint8_t>& bytes, std::uint64_t number) {
    for (std::size_t i = 0; i < kNumberSize; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
    }
}

/// Reads parts of a length that was checked before.
class Parts {
public:
    explicit Parts(const std::uint8_t* at) : m_at(at) {}

    std::uint64_t number() {
        std::uint64_t number = 0;
        for (std::size_t i = 0; i < kNumberSize; ++i)
            number |= std::uint64_t{m_at[i]} << (8 * i);
        m_at += kNumberSize;
        return number;
    }
    void hash(TextHash& hash) {
        std::copy_n(m_at, hash.size(), hash.begin());
        m_at += hash.size();
    }

private:
    const std::uint8_t* m_at;
};

}  // namespace

TextHash hashOf(std::string_view bytes) {
    const Handle<GChecksum, g_checksum_free> checksum(g_checksum_new(G_CHECKSUM_SHA256));
    g_checksum_update(checksum.get(), reinterpret_cast<const guchar*>(bytes.data()),
                      static_cast<gssize>(bytes.size()));
    TextHash hash{};
    gsize length = hash.size();
    g_checksum_get_digest(checksum.get(), hash.data(), &length);
    return hash;
}

std::vector<std::uint8_t> Bookmark::encoded() const {
    const std::string& name = path.native();
    std::vector<std::uint8_t> bytes(kMark.begin(), kMark.end());
    bytes.reserve(kHeadSize + name.size());
    for (const std::uint64_t number :
         {kVersion, stamp.device, stamp.inode, static_cast<std::uint64_t>(stamp.bornAt),
          static_cast<std::uint64_t>(stamp.changedAt), stamp.size}) {
        appendNumber(bytes, number);
    }
    bytes.insert(bytes.end(), fileHash.begin(), fileHash.end());
    bytes.insert(bytes.end(), noteHash.begin(), noteHash.end());
    bytes.insert(bytes.end(), name.begin(), name.end());
    return bytes;
}

std::optional<Bookmark> Bookmark::decode(const std::vector<std::uint8_t>& bytes) {
    if (bytes.size() <= kHeadSize || !std::equal(kMark.begin(), kMark.end(), bytes.begin()))
        return std::nullopt;
    Parts parts(bytes.data() + kMark.size());
    if (parts.number() != kVersion) return std::nullopt;
    Bookmark bookmark;
    bookmark.stamp.device = parts.number();
    bookmark.stamp.inode = parts.number();
    bookmark.stamp.bornAt = static_cast<std::int64_t>(parts.number());
    bookmark.stamp.changedAt = static_cast<std::int64_t>(parts.number());
    bookmark.stamp.size = parts.number();
    parts.hash(bookmark.fileHash);
    parts.hash(bookmark.noteHash);
    const std::string name(bytes.begin() + kHeadSize, bytes.end());
    if (name.front() != '/' || name.find('\0') != name.npos) return std::nullopt;
    bookmark.path = name;
    return bookmark;
}

}  // namespace corvel
