#include "platform/gtk/ContentFilter.h"

#include "platform/Handle.h"
#include "platform/Log.h"

#include <glibmm/miscutils.h>

#include <string>
#include <string_view>

namespace corvel {

namespace {

// The content security policy is not asked about pictures in form controls, preconnections or name
// look-ups; the filter is.
constexpr std::string_view kRules =
    R"([{"trigger": {"url-filter": "^[hwf][a-z]+:"}, "action": {"type": "block"}}])";

}  // namespace

std::shared_ptr<ContentFilter> ContentFilter::compile() {
    std::shared_ptr<ContentFilter> filter(new ContentFilter);
    const std::string folder =
        Glib::build_filename(Glib::get_user_cache_dir(), "qno Corvel", "web-filter");
    const GObjectHandle<WebKitUserContentFilterStore> store(
        webkit_user_content_filter_store_new(folder.c_str()));
    const Handle<GBytes, g_bytes_unref> rules(g_bytes_new_static(kRules.data(), kRules.size()));
    auto weak = std::make_unique<std::weak_ptr<ContentFilter>>(filter);
    webkit_user_content_filter_store_save(store.get(), "closed-room", rules.get(), nullptr,
                                          &ContentFilter::compiled, weak.release());
    return filter;
}

ContentFilter::~ContentFilter() {
    if (m_filter != nullptr) webkit_user_content_filter_unref(m_filter);
}

void ContentFilter::compiled(GObject* store, GAsyncResult* result, gpointer weak) {
    const std::unique_ptr<std::weak_ptr<ContentFilter>> owner(
        static_cast<std::weak_ptr<ContentFilter>*>(weak));
    GError* error = nullptr;
    WebKitUserContentFilter* made = webkit_user_content_filter_store_save_finish(
        WEBKIT_USER_CONTENT_FILTER_STORE(store), result, &error);
    const Handle<GError, g_error_free> failure(error);
    if (failure) logLine(std::string("The web view's filter cannot be made: ") + error->message);
    if (const auto filter = owner->lock()) {
        filter->settle(made);
    } else if (made != nullptr) {
        webkit_user_content_filter_unref(made);
    }
}

void ContentFilter::settle(WebKitUserContentFilter* filter) {
    m_filter = filter;
    m_state = filter != nullptr ? State::ready : State::failed;
    m_settled.emit();
}

void ContentFilter::addTo(WebKitUserContentManager* manager) const {
    if (m_filter != nullptr) webkit_user_content_manager_add_filter(manager, m_filter);
}

}  // namespace corvel
