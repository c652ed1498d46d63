#pragma once

#include <filesystem>

namespace corvel::distantVolumes {

/// Asks a volume that another machine or a program serves whether it answers at all: a look at a
/// file there may otherwise never come back. False when it has not told about `path` within a
/// quarter of a second, and then at once until that answer has come; true for this machine's own
/// volumes, which are not asked. For the main loop's thread alone.
bool answersFor(const std::filesystem::path& path);

}  // namespace corvel::distantVolumes
