#pragma once

#include "app/Session.h"
#include "app/assistant/MessageFeed.h"
#include "platform/ScopedConnection.h"
#include "platform/gtk/WebRoom.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>

#include <memory>
#include <string>
#include <vector>

namespace corvel {

/// Messages as a rendered page. The web view is made when the widget is first on screen, after that
/// frame; until then, and while it is hidden, messages only gather.
class MessageView : public Gtk::Box {
public:
    /// `session` must outlive the view, and so must what `messages` gives. `actions` says whether
    /// replies have buttons; `label` names the page for assistive technology.
    MessageView(Session& session,
                MessageFeed::Messages messages,
                bool hasActions,
                const Text& label);
    ~MessageView() override;

    /// Messages were added or removed, or a reply ended.
    void sync();
    /// The last message grew.
    void append(std::string_view piece);
    void setReplaceable(const std::vector<Uuid>& ids);
    void relabel();
    /// The page, for keys that scroll it; null before it is there.
    Gtk::Widget* page() { return m_view ? &m_view->widget() : nullptr; }
    WebKitView* webView() { return m_view.get(); }

    sigc::signal<void(MessageFeed::Verb, const AIMessage&)>& signalAction() { return m_action; }

private:
    void makeWebView();
    void showStyle();
    std::string stylesheet() const;
    MessagePage::Labels labels() const;

    Session& m_session;
    MessageFeed::Messages m_messages;
    bool m_hasActions;
    const Text& m_label;
    Gtk::Label m_notice;
    std::vector<Uuid> m_replaceable;
    std::unique_ptr<WebRoom> m_room;
    std::unique_ptr<WebKitView> m_view;
    std::unique_ptr<MessageFeed> m_feed;
    ScopedConnection m_making;
    std::vector<ScopedConnection> m_connections;
    sigc::signal<void(MessageFeed::Verb, const AIMessage&)> m_action;
};

}  // namespace corvel
