#include "library/ImportedFile.h"

#include "platform/DistantVolumes.h"
#include "platform/FileDescriptor.h"
#include "platform/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

namespace corvel {

namespace {

Date dateOf(const struct statx_timestamp& time) {
    return {time.tv_sec * 1'000'000 + time.tv_nsec / 1000};
}

bool readAll(int descriptor, std::size_t limit, std::string& bytes) {
    constexpr std::size_t kAtOnce = 1024 * 1024;
    std::size_t length = bytes.size();  // what the file said; it may grow or shrink meanwhile
    std::size_t used = 0;
    while (true) {
        if (used == length) bytes.resize(length += length == 0 ? 4096 : kAtOnce);
        const ssize_t count = ::read(descriptor, bytes.data() + used, length - used);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        if (count == 0) break;
        used += static_cast<std::size_t>(count);
        if (used > limit) return false;
    }
    bytes.resize(used);
    return true;
}

std::optional<std::string> fromUtf16(std::string_view bytes, bool isBigEndian) {
    if (bytes.size() % 2 != 0) return std::nullopt;
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        units.push_back(
            static_cast<char16_t>(isBigEndian ? first << 8 | second : second << 8 | first));
    }
    const auto size = static_cast<std::int32_t>(units.size());
    std::string text(units.size() * 3, '\0');
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8(text.data(), static_cast<std::int32_t>(text.size()), &length, units.data(), size,
                &status);
    if (U_FAILURE(status) != 0) return std::nullopt;  // half a pair
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::optional<std::string> decoded(std::string bytes) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    const std::string_view view = bytes;
    if (view.starts_with("\xFF\xFE")) return fromUtf16(view.substr(2), false);
    if (view.starts_with("\xFE\xFF")) return fromUtf16(view.substr(2), true);
    if (!text::isValidUtf8(view)) return text::fromWindows1250(view);
    if (view.starts_with(kMark)) bytes.erase(0, kMark.size());
    return bytes;
}

}  // namespace

std::variant<ImportedFile, ImportFault> ImportedFile::read(const std::filesystem::path& path,
                                                           std::size_t limit) {
    if (!distantVolumes::answersFor(path)) return ImportFault::noAnswer;
    const auto descriptor = openForReading(path);
    struct statx status {};
    constexpr unsigned kWanted = STATX_TYPE | STATX_SIZE | STATX_MTIME | STATX_BTIME;
    if (!descriptor.isOpen()) {
        // A socket, or a device without a driver, cannot be opened at all.
        return errno == ENXIO || errno == ENODEV ? ImportFault::notAFile : ImportFault::unreadable;
    }
    if (::statx(descriptor.get(), "", AT_EMPTY_PATH, kWanted, &status) != 0)
        return ImportFault::unreadable;
    if (!S_ISREG(status.stx_mode)) return ImportFault::notAFile;
    if (status.stx_size > limit) return ImportFault::unreadable;
    ImportedFile file;
    file.bytes.resize(static_cast<std::size_t>(status.stx_size) + 1);
    if (!readAll(descriptor.get(), limit, file.bytes)) return ImportFault::unreadable;
    file.modifiedAt = dateOf(status.stx_mtime);
    const bool hasBirth = (status.stx_mask & STATX_BTIME) != 0;
    file.createdAt =
        hasBirth ? std::min(dateOf(status.stx_btime), file.modifiedAt) : file.modifiedAt;
    return file;
}

std::optional<std::string> decodedText(std::string bytes) {
    auto text = decoded(std::move(bytes));
    if (text && text->find('\0') != text->npos) return std::nullopt;
    return text;
}

}  // namespace corvel
