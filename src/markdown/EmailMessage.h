#pragma once

#include "platform/Date.h"

#include <string>
#include <string_view>

namespace corvel {

/// What goes into a message file.
struct EmailParts {
    std::string_view subject;
    std::string_view plainText;
    std::string_view html;  ///< images may be `data:` URLs
    Date date;
};

/// A message as a file that a mail program opens for editing (`X-Unsent`): nobody is its sender or
/// recipient yet. Plain text and HTML are alternatives; embedded images become parts of their own
/// that the HTML names by `cid:`, as mail programs show no `data:` URLs. Lines end in CR LF; all
/// text is UTF-8 in Base64, so nothing of a note can be taken for a header or a boundary.
std::string emailMessage(const EmailParts& parts);

}  // namespace corvel
