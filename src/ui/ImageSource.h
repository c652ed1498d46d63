#pragma once

#include <gdk/gdk.h>
#include <giomm/cancellable.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace corvel {

/// What a clipboard or a drop holds that may be images.
class ImageSource {
public:
    using Paths = std::vector<std::filesystem::path>;
    using Bytes = std::optional<std::vector<std::uint8_t>>;

    static bool hasFiles(GdkContentFormats* formats);
    static bool hasText(GdkContentFormats* formats);
    static bool hasImage(GdkContentFormats* formats);
    /// Everything of the above that a drop on the editor may bring.
    static GdkContentFormats* formats();

    // Each calls `done` once, later, on the main loop, unless `cancellable` was cancelled.
    using PathsDone = std::function<void(const Paths&)>;
    using BytesDone = std::function<void(Bytes)>;
    static void readFiles(GdkClipboard* from,
                          const Glib::RefPtr<Gio::Cancellable>& cancellable,
                          PathsDone done);
    static void readFiles(GdkDrop* from,
                          const Glib::RefPtr<Gio::Cancellable>& cancellable,
                          PathsDone done);
    /// The image as it was encoded by whoever offers it; none when it cannot be read.
    static void readImage(GdkClipboard* from,
                          std::size_t limit,
                          const Glib::RefPtr<Gio::Cancellable>& cancellable,
                          BytesDone done);
    static void readImage(GdkDrop* from,
                          std::size_t limit,
                          const Glib::RefPtr<Gio::Cancellable>& cancellable,
                          BytesDone done);
};

}  // namespace corvel
