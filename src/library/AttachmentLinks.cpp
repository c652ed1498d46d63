#include "library/AttachmentLinks.h"

#include <algorithm>
#include <optional>
#include <unordered_set>

namespace corvel {

namespace {

constexpr std::string_view kScheme = "attachment://";
constexpr std::string_view kFolder = "_attachments/";
constexpr std::size_t kIdLength = 36;

bool isUnreserved(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' || byte == '_' || byte == '~';
}

// What may belong to an address behind the folder's name.
std::size_t addressEnd(std::string_view text, std::size_t begin) {
    const auto* end =
        std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(begin), text.end(),
                         [](char byte) { return isUnreserved(byte) || byte == '%'; });
    return static_cast<std::size_t>(end - text.begin());
}

/// The id at `begin`, in the form that is written here and with nothing at its end that could be
/// taken for a part of a file's address.
std::optional<Uuid> idAt(std::string_view text, std::size_t begin) {
    const auto word = text.substr(begin, kIdLength);
    const auto id = Uuid::parse(word);
    if (!id || id->toString() != word) return std::nullopt;
    if (addressEnd(text, begin + kIdLength) != begin + kIdLength) return std::nullopt;
    return id;
}

/// Copies `text` and puts what `replacement` gives in place of each `mark` with what follows it.
template <typename Replacement>
std::string replaced(std::string_view text, std::string_view mark, Replacement replacement) {
    std::string result;
    std::size_t copied = 0;
    for (auto at = text.find(mark); at != text.npos; at = text.find(mark, at + 1)) {
        std::size_t end = at;
        const std::string* address = replacement(at, end);
        if (address == nullptr) continue;
        result.append(text, copied, at - copied).append(*address);
        copied = end;
    }
    return result.append(text, copied);
}

}  // namespace

std::string attachmentAddress(const Uuid& id) {
    return std::string(kScheme) + id.toString();
}

std::vector<Uuid> attachmentsNamedIn(std::string_view text) {
    std::vector<Uuid> ids;
    std::unordered_set<Uuid> known;
    for (auto at = text.find(kScheme); at != text.npos; at = text.find(kScheme, at + 1)) {
        const auto id = idAt(text, at + kScheme.size());
        if (id && known.insert(*id).second) ids.push_back(*id);
    }
    return ids;
}

std::string fileAddress(std::string_view path) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string address;
    for (const char byte : path) {
        if (isUnreserved(byte) || byte == '/') {
            address += byte;
        } else {
            const auto value = static_cast<unsigned char>(byte);
            address += '%';
            address += kDigits[value >> 4];
            address += kDigits[value & 0xF];
        }
    }
    return address;
}

std::string withFileAddresses(std::string_view text,
                              const std::unordered_map<Uuid, std::string>& files) {
    return replaced(text, kScheme, [&](std::size_t at, std::size_t& end) -> const std::string* {
        const auto id = idAt(text, at + kScheme.size());
        const auto file = id ? files.find(*id) : files.end();
        end = at + kScheme.size() + kIdLength;
        return file == files.end() ? nullptr : &file->second;
    });
}

std::string withAttachmentAddresses(std::string_view text,
                                    const std::unordered_map<std::string, Uuid>& attachments) {
    std::string address;
    return replaced(text, kFolder, [&](std::size_t at, std::size_t& end) -> const std::string* {
        end = addressEnd(text, at + kFolder.size());
        const auto found = attachments.find(std::string(text.substr(at, end - at)));
        if (found == attachments.end()) return nullptr;
        address = attachmentAddress(found->second);
        return &address;
    });
}

}  // namespace corvel
