#pragma once

#include <gio/gio.h>
#include <giomm/cancellable.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace corvel {

/// Reads `stream` (a reference is taken) to its end without holding up the main loop. Calls `done`
/// once, on the main loop, unless `cancellable` was cancelled; with none when reading failed. Stops
/// early, with what came, at more than `limit` bytes.
void readStream(GInputStream* stream,
                std::size_t limit,
                const Glib::RefPtr<Gio::Cancellable>& cancellable,
                std::function<void(std::optional<std::vector<std::uint8_t>>)> done);

}  // namespace corvel
