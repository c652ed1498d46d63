#pragma once

#include "platform/Handle.h"
#include "platform/gtk/ContentFilter.h"
#include "platform/gtk/WebKitView.h"

#include <webkit/webkit.h>

#include <memory>
#include <string>

namespace corvel {

/// Makes every web view of the program: closed rooms. A view shows the program's own pages, runs
/// only their own script, reaches no network and no file, and stays where it is. Behind each other
/// stand a content security policy, a content filter, and the refusal of every navigation.
class WebRoom {
public:
    WebRoom();

    /// A view whose page may run the script with this hash ("sha256-…"). Its first page waits for
    /// the filter.
    std::unique_ptr<WebKitView> makeView(const std::string& scriptHash) const;

private:
    std::shared_ptr<ContentFilter> m_filter;
    GObjectHandle<WebKitWebContext> m_context;
    GObjectHandle<WebKitNetworkSession> m_session;
    GObjectHandle<WebKitSettings> m_settings;
};

}  // namespace corvel
