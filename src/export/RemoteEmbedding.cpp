#include "export/RemoteEmbedding.h"

#include "markdown/DataUrl.h"
#include "markdown/ImagePasses.h"

#include <glibmm/main.h>

#include <chrono>
#include <cstdint>
#include <span>
#include <utility>

namespace corvel {

namespace {

constexpr std::chrono::seconds kPatience{25};

/// What an attribute with `text` means, as far as addresses are concerned.
std::string withoutEntities(std::string text) {
    constexpr std::string_view kAmpersand = "&amp;";
    for (auto at = text.find(kAmpersand); at != std::string::npos;
         at = text.find(kAmpersand, at + 1)) {
        text.replace(at, kAmpersand.size(), "&");
    }
    return text;
}

std::string urlOf(const RemoteImage& image) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(image.bytes.data());
    return dataUrl(image.mimeType, std::span(bytes, image.bytes.size()));
}

}  // namespace

RemoteEmbedding::RemoteEmbedding(std::string html,
                                 const Glib::RefPtr<Gio::Cancellable>& cancellable,
                                 Done done)
    : m_html(std::move(html)), m_cancellable(cancellable), m_done(std::move(done)) {}

void RemoteEmbedding::start(std::string html,
                            RemoteImages& images,
                            const Glib::RefPtr<Gio::Cancellable>& cancellable,
                            Done done) {
    const std::shared_ptr<RemoteEmbedding> self(
        new RemoteEmbedding(std::move(html), cancellable, std::move(done)));
    self->m_patience = Glib::signal_timeout().connect_seconds(
        [self] {
            self->finish();
            return false;
        },
        static_cast<unsigned>(kPatience.count()));
    Glib::signal_idle().connect_once([self, &images] {
        if (!self->m_cancellable->is_cancelled()) self->fetchAll(images);
    });
}

void RemoteEmbedding::fetchAll(RemoteImages& images) {
    imagepasses::replaceRemoteSources(m_html, [this](std::string_view address) {
        m_images.try_emplace(std::string(address));
        return std::nullopt;
    });
    m_missing = m_images.size() + 1;
    for (const auto& [address, none] : m_images) {
        images.fetch(withoutEntities(address),
                     [self = shared_from_this(), written = address](const auto& image) {
                         self->arrived(written, image);
                     });
    }
    if (--m_missing == 0) finish();
}

void RemoteEmbedding::arrived(const std::string& address, const RemoteImages::Image& image) {
    m_images[address] = image;
    if (--m_missing == 0) finish();
}

void RemoteEmbedding::finish() {
    m_patience.disconnect();
    const auto done = std::exchange(m_done, {});
    if (!done || m_cancellable->is_cancelled()) return;
    done(imagepasses::replaceRemoteSources(
        std::move(m_html), [this](std::string_view address) -> std::optional<std::string> {
            const auto found = m_images.find(address);
            if (found == m_images.end() || !found->second) return std::nullopt;
            return urlOf(*found->second);
        }));
}

}  // namespace corvel
