#include "ui/StreamReader.h"

#include "platform/Handle.h"

#include <memory>
#include <utility>

namespace corvel {

namespace {

constexpr gsize kAtOnce = gsize{256} * 1024;

/// One reading under way; owned by the pending callback.
class Reading {
public:
    using Done = std::function<void(std::optional<std::vector<std::uint8_t>>)>;

    Reading(GInputStream* stream,
            std::size_t limit,
            Glib::RefPtr<Gio::Cancellable> cancellable,
            Done done)
        : m_stream(G_INPUT_STREAM(g_object_ref(stream)))
        , m_limit(limit)
        , m_cancellable(std::move(cancellable))
        , m_done(std::move(done)) {}

    static void next(std::unique_ptr<Reading> self) {
        auto* stream = self->m_stream.get();
        auto* cancellable = self->m_cancellable->gobj();
        g_input_stream_read_bytes_async(stream, kAtOnce, G_PRIORITY_DEFAULT, cancellable, &arrived,
                                        self.release());
    }

private:
    static void arrived(GObject*, GAsyncResult* result, gpointer data) {
        std::unique_ptr<Reading> self(static_cast<Reading*>(data));
        const Handle<GBytes, g_bytes_unref> piece(
            g_input_stream_read_bytes_finish(self->m_stream.get(), result, nullptr));
        if (self->m_cancellable->is_cancelled()) return;
        if (!piece) return self->m_done(std::nullopt);
        gsize size = 0;
        const auto* bytes = static_cast<const std::uint8_t*>(g_bytes_get_data(piece.get(), &size));
        if (size == 0) return self->m_done(std::move(self->m_bytes));
        self->m_bytes.insert(self->m_bytes.end(), bytes, bytes + size);
        if (self->m_bytes.size() > self->m_limit) return self->m_done(std::move(self->m_bytes));
        next(std::move(self));
    }

    GObjectHandle<GInputStream> m_stream;
    std::size_t m_limit;
    Glib::RefPtr<Gio::Cancellable> m_cancellable;
    Done m_done;
    std::vector<std::uint8_t> m_bytes;
};

}  // namespace

void readStream(GInputStream* stream,
                std::size_t limit,
                const Glib::RefPtr<Gio::Cancellable>& cancellable,
                std::function<void(std::optional<std::vector<std::uint8_t>>)> done) {
    Reading::next(std::make_unique<Reading>(stream, limit, cancellable, std::move(done)));
}

}  // namespace corvel
