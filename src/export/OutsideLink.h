#pragma once

#include <optional>
#include <string>

namespace corvel {

/// An outside address (http, https, mailto) as a document may carry it, with what is no part of an
/// address percent-encoded; none when it leads nowhere from there.
std::optional<std::string> outsideLink(const std::string& address);

}  // namespace corvel
