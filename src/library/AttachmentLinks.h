#pragma once

#include "platform/Uuid.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvel {

/// The name that a text of a note has for an attachment.
std::string attachmentAddress(const Uuid& id);

/// The attachments that a text names by their addresses as they are written here, each once, in
/// order.
std::vector<Uuid> attachmentsNamedIn(std::string_view text);

/// Where files beside a Markdown file lie that were attachments.
inline constexpr const char* kAttachmentFolder = "_attachments";

/// The address of a file below `kAttachmentFolder` in Markdown: percent-encoded.
std::string fileAddress(std::string_view path);

/// `text` with the addresses of attachments replaced by those of their files.
std::string withFileAddresses(std::string_view text,
                              const std::unordered_map<Uuid, std::string>& files);
/// The other way round. Each gives back what the other was given, unless the text has an address
/// of a file of its own: the caller compares.
std::string withAttachmentAddresses(std::string_view text,
                                    const std::unordered_map<std::string, Uuid>& attachments);

}  // namespace corvel
