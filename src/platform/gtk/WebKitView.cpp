#include "platform/gtk/WebKitView.h"

#include "platform/Handle.h"

#include <glibmm/main.h>
#include <gtkmm/object.h>

#include <array>
#include <cmath>
#include <string_view>
#include <utility>

namespace corvel {

namespace {

constexpr const char* kOwnAddress = "about:blank";
constexpr const char* kScrollMessage = "scrollHandler";

gboolean refuse() {
    return TRUE;
}

GtkWidget* refuseWindow() {
    return nullptr;
}

gboolean denyPermission(WebKitWebView*, WebKitPermissionRequest* request, gpointer) {
    webkit_permission_request_deny(request);
    return TRUE;
}

gboolean denyPermissionQuery(WebKitWebView*, WebKitPermissionStateQuery* query, gpointer) {
    webkit_permission_state_query_finish(query, WEBKIT_PERMISSION_STATE_DENIED);
    return TRUE;
}

gboolean cancelFileChooser(WebKitWebView*, WebKitFileChooserRequest* request, gpointer) {
    webkit_file_chooser_request_cancel(request);
    return TRUE;
}

gboolean cancelColorChooser(WebKitWebView*, WebKitColorChooserRequest* request, gpointer) {
    webkit_color_chooser_request_cancel(request);
    return TRUE;
}

gboolean cancelAuthentication(WebKitWebView*, WebKitAuthenticationRequest* request, gpointer) {
    webkit_authentication_request_cancel(request);
    return TRUE;
}

bool isHarmless(WebKitContextMenuItem* item) {
    switch (webkit_context_menu_item_get_stock_action(item)) {
        case WEBKIT_CONTEXT_MENU_ACTION_COPY:
        case WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL:
        case WEBKIT_CONTEXT_MENU_ACTION_COPY_LINK_TO_CLIPBOARD:
        case WEBKIT_CONTEXT_MENU_ACTION_COPY_IMAGE_TO_CLIPBOARD:
            return true;
        default:
            return false;
    }
}

/// Only copying stays in the menu; without it there is no menu.
gboolean trimContextMenu(WebKitWebView*, WebKitContextMenu* menu, WebKitHitTestResult*, gpointer) {
    for (int position = static_cast<int>(webkit_context_menu_get_n_items(menu)) - 1; position >= 0;
         --position) {
        auto* item = webkit_context_menu_get_item_at_position(menu, static_cast<guint>(position));
        if (!isHarmless(item)) webkit_context_menu_remove(menu, item);
    }
    return webkit_context_menu_get_n_items(menu) == 0 ? TRUE : FALSE;
}

using Evaluated = WebView::Evaluated;

void evaluated(GObject* view, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Evaluated> done(static_cast<Evaluated*>(data));
    GError* error = nullptr;
    const GObjectHandle<JSCValue> value(
        webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, &error));
    const Handle<GError, g_error_free> failure(error);
    if (!*done) return;
    (*done)(failure ? std::optional<std::string>(error->message) : std::nullopt);
}

}  // namespace

WebKitView::WebKitView(WebKitWebView* view, std::shared_ptr<ContentFilter> filter)
    : m_view(WEBKIT_WEB_VIEW(g_object_ref_sink(view)))
    , m_widget(Glib::wrap(GTK_WIDGET(view)))
    , m_tabs(*m_widget)
    , m_filter(std::move(filter)) {
    g_signal_connect(m_view, "load-changed", G_CALLBACK(loadChanged), this);
    g_signal_connect(m_view, "decide-policy", G_CALLBACK(decidePolicy), this);
    g_signal_connect(m_view, "web-process-terminated", G_CALLBACK(processEnded), this);
    connectRefusals();

    auto* content = webkit_web_view_get_user_content_manager(m_view);
    g_signal_connect(content, "script-message-received::scrollHandler", G_CALLBACK(scrolled), this);
    webkit_user_content_manager_register_script_message_handler(content, kScrollMessage, nullptr);
    m_filterSettled =
        m_filter->signalSettled().connect(sigc::mem_fun(*this, &WebKitView::loadWaitingPage));
}

WebKitView::~WebKitView() {
    g_signal_handlers_disconnect_by_data(m_view, this);
    auto* content = webkit_web_view_get_user_content_manager(m_view);
    g_signal_handlers_disconnect_by_data(content, this);
    webkit_user_content_manager_unregister_script_message_handler(content, kScrollMessage, nullptr);
    if (m_message) {
        webkit_user_content_manager_unregister_script_message_handler(
            content, m_messageName.c_str(), nullptr);
    }
    if (m_widget->get_parent() != nullptr) m_widget->unparent();
    g_object_unref(m_view);
}

void WebKitView::connectRefusals() {
    for (const char* signal :
         {"script-dialog", "print", "enter-fullscreen", "show-notification", "show-option-menu"}) {
        g_signal_connect(m_view, signal, G_CALLBACK(refuse), nullptr);
    }
    const std::array<std::pair<const char*, GCallback>, 7> answers{{
        {"create", G_CALLBACK(refuseWindow)},
        {"permission-request", G_CALLBACK(denyPermission)},
        {"query-permission-state", G_CALLBACK(denyPermissionQuery)},
        {"run-file-chooser", G_CALLBACK(cancelFileChooser)},
        {"run-color-chooser", G_CALLBACK(cancelColorChooser)},
        {"authenticate", G_CALLBACK(cancelAuthentication)},
        {"context-menu", G_CALLBACK(trimContextMenu)},
    }};
    for (const auto& [signal, answer] : answers) {
        g_signal_connect(m_view, signal, answer, nullptr);
    }
}

void WebKitView::setBackground(const Gdk::RGBA& color) {
    webkit_web_view_set_background_color(m_view, color.gobj());
}

void WebKitView::loadPage(const std::string& html) {
    m_waitingPage = html;
    loadWaitingPage();
}

void WebKitView::loadWaitingPage() {
    if (!m_waitingPage || m_filter->state() == ContentFilter::State::compiling) return;
    const std::string page = *std::exchange(m_waitingPage, std::nullopt);
    if (m_filter->state() == ContentFilter::State::failed) {
        failSoon();
        return;
    }
    auto* content = webkit_web_view_get_user_content_manager(m_view);
    webkit_user_content_manager_remove_all_filters(content);
    m_filter->addTo(content);
    m_isLoading = true;
    webkit_web_view_load_html(m_view, page.c_str(), nullptr);
}

void WebKitView::failSoon() {
    m_failing = Glib::signal_idle().connect([this] {
        m_failed.emit();
        return false;
    });
}

void WebKitView::evaluate(const std::string& script, Evaluated done) {
    auto data = std::make_unique<Evaluated>(std::move(done));
    webkit_web_view_evaluate_javascript(m_view, script.data(), static_cast<gssize>(script.size()),
                                        nullptr, nullptr, nullptr, &evaluated, data.release());
}

void WebKitView::terminate() {
    m_waitingPage.reset();
    webkit_web_view_terminate_web_process(m_view);
}

void WebKitView::setScrollHandler(std::function<void(double)> handler) {
    m_scroll = std::move(handler);
}

void WebKitView::setMessageHandler(const char* name,
                                   std::function<void(const std::string&)> handler) {
    m_message = std::move(handler);
    m_messageName = name;
    auto* content = webkit_web_view_get_user_content_manager(m_view);
    const std::string signal = "script-message-received::" + m_messageName;
    g_signal_connect(content, signal.c_str(), G_CALLBACK(messageCame), this);
    webkit_user_content_manager_register_script_message_handler(content, name, nullptr);
}

void WebKitView::messageCame(WebKitUserContentManager*, JSCValue* value, gpointer self) {
    if (jsc_value_is_string(value) == FALSE) return;
    const Handle<char, g_free> text(jsc_value_to_string(value));
    static_cast<WebKitView*>(self)->m_message(text.get());
}

void WebKitView::loadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer self) {
    auto* view = static_cast<WebKitView*>(self);
    if (event != WEBKIT_LOAD_FINISHED || !view->m_isLoading) return;
    view->m_isLoading = false;
    view->m_loaded.emit();
}

bool WebKitView::isOwnLoad(WebKitNavigationAction* action) const {
    const char* url = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
    return m_isLoading && g_strcmp0(url, kOwnAddress) == 0 &&
           webkit_navigation_action_get_frame_name(action) == nullptr;
}

void WebKitView::decideNavigation(WebKitNavigationPolicyDecision* decision) {
    auto* action = webkit_navigation_policy_decision_get_navigation_action(decision);
    if (webkit_navigation_action_get_navigation_type(action) !=
        WEBKIT_NAVIGATION_TYPE_LINK_CLICKED) {
        if (isOwnLoad(action)) {
            webkit_policy_decision_use(WEBKIT_POLICY_DECISION(decision));
        } else {
            webkit_policy_decision_ignore(WEBKIT_POLICY_DECISION(decision));
        }
        return;
    }
    const std::string url =
        webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
    const bool byUser = webkit_navigation_action_is_user_gesture(action) != FALSE;
    webkit_policy_decision_ignore(WEBKIT_POLICY_DECISION(decision));
    if (byUser) m_link.emit(url);
}

gboolean WebKitView::decidePolicy(WebKitWebView*,
                                  WebKitPolicyDecision* decision,
                                  WebKitPolicyDecisionType type,
                                  gpointer self) {
    if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
        webkit_policy_decision_ignore(decision);  // the program's own pages come without one
    } else {
        auto* navigation = WEBKIT_NAVIGATION_POLICY_DECISION(decision);
        static_cast<WebKitView*>(self)->decideNavigation(navigation);
    }
    return TRUE;
}

void WebKitView::processEnded(WebKitWebView*,
                              WebKitWebProcessTerminationReason reason,
                              gpointer self) {
    auto* view = static_cast<WebKitView*>(self);
    view->m_isLoading = false;
    if (reason != WEBKIT_WEB_PROCESS_TERMINATED_BY_API) view->m_failed.emit();
}

void WebKitView::scrolled(WebKitUserContentManager*, JSCValue* value, gpointer self) {
    if (jsc_value_is_number(value) == FALSE) return;
    const double percent = jsc_value_to_double(value);
    auto* view = static_cast<WebKitView*>(self);
    if (percent >= 0 && percent <= 1 && view->m_scroll) view->m_scroll(percent);
}

}  // namespace corvel
