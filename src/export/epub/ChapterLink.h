#pragma once

#include <optional>
#include <string>

namespace corvel {

/// An outside address (http, https, mailto) as a book may carry it, with what is no part of an
/// address percent-encoded; none when it leads nowhere from a book.
std::optional<std::string> chapterLink(const std::string& address);

}  // namespace corvel
