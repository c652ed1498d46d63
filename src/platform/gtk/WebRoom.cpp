#include "platform/gtk/WebRoom.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace corvel {

namespace {

std::string policyFor(const std::string& scriptHash) {
    return "default-src 'none'; img-src data: corvel-image:; style-src 'unsafe-inline'; script-src "
           "'" +
           scriptHash + "'; base-uri 'none'; form-action 'none'";
}

bool isUnwanted(std::string_view feature) {
    constexpr std::array<std::string_view, 10> kUnwanted{
        "LinkPreconnect",  "LinkPreconnectEarlyHints",
        "LinkDNSPrefetch", "LinkPreload",
        "LinkPrefetch",    "DownloadAttribute",
        "BeaconAPI",       "WebSocket",
        "ServiceWorkers",  "SharedWorker"};
    return feature.starts_with("Media") || std::ranges::find(kUnwanted, feature) != kUnwanted.end();
}

void switchFeaturesOff(WebKitSettings* settings) {
    const Handle<WebKitFeatureList, webkit_feature_list_unref> features(
        webkit_settings_get_all_features());
    for (gsize index = 0; index < webkit_feature_list_get_length(features.get()); ++index) {
        WebKitFeature* feature = webkit_feature_list_get(features.get(), index);
        if (isUnwanted(webkit_feature_get_identifier(feature))) {
            webkit_settings_set_feature_enabled(settings, feature, FALSE);
        }
    }
}

/// What a page's "sans-serif" stands for: the desktop's own font, as in the windows.
void useDesktopFont(WebKitSettings* settings) {
    gchar* name = nullptr;
    g_object_get(gtk_settings_get_default(), "gtk-font-name", &name, nullptr);
    const Handle<gchar, g_free> owner(name);
    const Handle<PangoFontDescription, pango_font_description_free> font(
        pango_font_description_from_string(name != nullptr ? name : "Sans"));
    const char* family = pango_font_description_get_family(font.get());
    if (family == nullptr) return;
    webkit_settings_set_sans_serif_font_family(settings, family);
    webkit_settings_set_default_font_family(settings, family);
}

WebKitSettings* makeSettings() {
    WebKitSettings* settings = webkit_settings_new();
    webkit_settings_set_javascript_can_open_windows_automatically(settings, FALSE);
    webkit_settings_set_javascript_can_access_clipboard(settings, FALSE);
    webkit_settings_set_enable_media(settings, FALSE);
    webkit_settings_set_enable_webgl(settings, FALSE);
    webkit_settings_set_enable_webaudio(settings, FALSE);
    webkit_settings_set_enable_html5_local_storage(settings, FALSE);
    webkit_settings_set_enable_html5_database(settings, FALSE);
    webkit_settings_set_enable_developer_extras(settings, FALSE);
    webkit_settings_set_enable_page_cache(settings, FALSE);
    webkit_settings_set_enable_back_forward_navigation_gestures(settings, FALSE);
    webkit_settings_set_enable_fullscreen(settings, FALSE);
    useDesktopFont(settings);
    switchFeaturesOff(settings);
    return settings;
}

void refuseDownload(WebKitNetworkSession*, WebKitDownload* download, gpointer) {
    webkit_download_cancel(download);
}

WebKitNetworkSession* makeSession() {
    WebKitNetworkSession* session = webkit_network_session_new_ephemeral();
    webkit_cookie_manager_set_accept_policy(webkit_network_session_get_cookie_manager(session),
                                            WEBKIT_COOKIE_POLICY_ACCEPT_NEVER);
    webkit_network_session_set_persistent_credential_storage_enabled(session, FALSE);
    g_signal_connect(session, "download-started", G_CALLBACK(refuseDownload), nullptr);
    return session;
}

}  // namespace

WebRoom::WebRoom(Permission mayLoadImages)
    : m_filter(ContentFilter::compile())
    , m_images(std::make_shared<ImageScheme>(std::move(mayLoadImages)))
    , m_context(webkit_web_context_new())
    , m_session(makeSession())
    , m_settings(makeSettings()) {
    webkit_web_context_set_cache_model(m_context.get(), WEBKIT_CACHE_MODEL_DOCUMENT_VIEWER);
    webkit_web_context_set_spell_checking_enabled(m_context.get(), FALSE);
    ImageScheme::registerIn(m_context.get(), m_images);
}

WebRoom::~WebRoom() = default;

std::unique_ptr<WebKitView> WebRoom::makeView(const std::string& scriptHash) const {
    const GObjectHandle<WebKitUserContentManager> content(webkit_user_content_manager_new());
    const std::string policy = policyFor(scriptHash);
    GObject* view = G_OBJECT(
        g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", m_context.get(), "network-session",
                     m_session.get(), "settings", m_settings.get(), "user-content-manager",
                     content.get(), "default-content-security-policy", policy.c_str(), nullptr));
    return std::make_unique<WebKitView>(WEBKIT_WEB_VIEW(view), m_filter);
}

}  // namespace corvel
