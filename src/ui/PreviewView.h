#pragma once

#include "app/ScrollSync.h"
#include "app/Session.h"
#include "markdown/GuardedRenderer.h"
#include "markdown/PreviewCoordinator.h"
#include "platform/ScopedConnection.h"
#include "platform/gtk/WebRoom.h"

#include <giomm/cancellable.h>
#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/stack.h>
#include <gtkmm/textview.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace corvel {

/// How a page differs from the live preview's.
struct PreviewStyle {
    std::string extraCss;  ///< behind the theme's style sheet
    /// Where relative addresses of images start just now; empty for nowhere.
    std::function<std::filesystem::path()> imageFolder;
};

/// Where the images lie of the note that is open.
std::function<std::filesystem::path()> folderOfOpenFile(const Session& session);

/// A rendered Markdown text. The web view is made when the widget is first on screen, after that
/// frame; what is not on screen is not rendered. A text that cannot be rendered is shown as it is,
/// with a notice.
class PreviewView : public Gtk::Box {
public:
    explicit PreviewView(Session& session, PreviewStyle style = {});  // must outlive the view
    ~PreviewView() override;

    /// Shows `markdown`. `percent` says where the page stands afterwards; without it the page stays
    /// where it is.
    void show(const std::string& markdown, std::optional<double> percent = std::nullopt);
    /// Follows the editor; a position that came from the page itself is not pushed back to it.
    void setScroll(double percent, ScrollSource source);
    /// What the page is called for assistive technology.
    void setLabel(const std::string& label);
    /// Keys scroll the page from now on, or from when it is there.
    void focusPage();
    void relabel();

    /// The reader scrolled the page.
    std::function<void(double percent)> onScrollChanged;

private:
    void makeWebView();
    void refresh();
    void showRendered(RenderOutcome outcome);
    void showWebPage();
    void showPlainText();
    void applyColors();
    void scrollSoon();
    void openLink(const std::string& url);

    Session& m_session;
    PreviewStyle m_style;
    std::string m_label;
    GuardedRenderer m_renderer;
    Glib::RefPtr<Gio::Cancellable> m_rendering;  // the newest request
    std::string m_markdown;
    std::optional<double> m_place;   // where the text to come is to stand
    std::optional<double> m_scroll;  // where the page is to be with the next frame
    guint m_tick = 0;
    bool m_isStale = false;
    bool m_wantsFocus = false;  // as soon as there is a view to have it

    Gtk::Stack m_stack;
    Gtk::Box m_page;
    Gtk::Box m_plain;
    Gtk::Label m_notice;
    Gtk::TextView m_plainText;

    std::unique_ptr<WebRoom> m_room;
    std::unique_ptr<WebKitView> m_view;
    std::shared_ptr<PreviewCoordinator> m_coordinator;
    ScopedConnection m_makingView;
    ScopedConnection m_themeChanged;
    ScopedConnection m_preferenceChanged;
};

}  // namespace corvel
