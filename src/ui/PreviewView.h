#pragma once

#include "app/settings/Localisation.h"
#include "markdown/GuardedRenderer.h"
#include "markdown/MarkdownParserService.h"
#include "markdown/PreviewCoordinator.h"
#include "platform/ScopedConnection.h"
#include "platform/gtk/WebRoom.h"
#include "themes/ThemeManager.h"

#include <giomm/cancellable.h>
#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/stack.h>
#include <gtkmm/textview.h>

#include <memory>
#include <string>

namespace corvel {

/// The rendered note. The web view is made when the pane is first on screen, after that frame; what
/// is not on screen is not rendered.
class PreviewPane : public Gtk::Box {
public:
    PreviewPane(const MarkdownParserService& parser,
                ThemeManager& themes,
                const Localisation& texts);
    ~PreviewPane() override;

    void show(const std::string& markdown, PreviewCoordinator::Position position);
    void relabel();

private:
    void makeWebView();
    void refresh();
    void showRendered(RenderOutcome outcome);
    void showWebPage();
    void showPlainText();
    void applyColors();
    static void openLink(const std::string& url);

    const MarkdownParserService& m_parser;
    const ThemeManager& m_themes;
    const Localisation& m_texts;
    GuardedRenderer m_renderer;
    Glib::RefPtr<Gio::Cancellable> m_rendering;  // the newest request
    std::string m_markdown;
    PreviewCoordinator::Position m_position = PreviewCoordinator::Position::keep;
    bool m_isStale = false;

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
};

}  // namespace corvel
