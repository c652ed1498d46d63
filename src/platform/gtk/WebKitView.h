#pragma once

#include "platform/ScopedConnection.h"
#include "platform/WebView.h"
#include "platform/gtk/ContentFilter.h"
#include "platform/gtk/TabPassage.h"

#include <gdkmm/rgba.h>
#include <gtkmm/widget.h>
#include <webkit/webkit.h>

#include <memory>
#include <optional>
#include <string>

namespace corvel {

/// A WebKit view as a closed room: made by WebRoom only. It lets through its own page loads and
/// refuses every other navigation, window, download, dialog and permission.
class WebKitView : public WebView {
public:
    /// Takes the floating reference of `view`.
    WebKitView(WebKitWebView* view, std::shared_ptr<ContentFilter> filter);
    WebKitView(const WebKitView&) = delete;
    WebKitView& operator=(const WebKitView&) = delete;
    ~WebKitView() override;

    Gtk::Widget& widget() { return *m_widget; }
    /// What shows where no page is yet.
    void setBackground(const Gdk::RGBA& color);
    WebKitWebView* handle() const { return m_view; }
    /// Receives what the page's own script posts to the handler `name`, if it is a text. Set once,
    /// before the first page.
    void setMessageHandler(const char* name, std::function<void(const std::string&)> handler);

    void loadPage(const std::string& html) override;
    void evaluate(const std::string& script, Evaluated done) override;
    void terminate() override;
    void setScrollHandler(std::function<void(double)> handler) override;
    sigc::signal<void()>& signalLoaded() override { return m_loaded; }
    sigc::signal<void(const std::string&)>& signalLinkActivated() override { return m_link; }
    sigc::signal<void()>& signalFailed() override { return m_failed; }

private:
    void connectRefusals();
    void loadWaitingPage();
    void failSoon();
    bool isOwnLoad(WebKitNavigationAction* action) const;
    void decideNavigation(WebKitNavigationPolicyDecision* decision);

    static void loadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer self);
    static gboolean decidePolicy(WebKitWebView*,
                                 WebKitPolicyDecision* decision,
                                 WebKitPolicyDecisionType type,
                                 gpointer self);
    static void processEnded(WebKitWebView*,
                             WebKitWebProcessTerminationReason reason,
                             gpointer self);
    static void messageCame(WebKitUserContentManager*, JSCValue* value, gpointer self);
    static void scrolled(WebKitUserContentManager*, JSCValue* value, gpointer self);

    WebKitWebView* m_view;
    Gtk::Widget* m_widget;
    TabPassage m_tabs;
    std::shared_ptr<ContentFilter> m_filter;
    std::optional<std::string> m_waitingPage;
    bool m_isLoading = false;
    std::function<void(double)> m_scroll;
    std::function<void(const std::string&)> m_message;
    std::string m_messageName;
    ScopedConnection m_filterSettled;
    ScopedConnection m_failing;
    sigc::signal<void()> m_loaded;
    sigc::signal<void(const std::string&)> m_link;
    sigc::signal<void()> m_failed;
};

}  // namespace corvel
