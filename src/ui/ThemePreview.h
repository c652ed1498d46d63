#pragma once

#include "app/settings/Localisation.h"
#include "markdown/PreviewCoordinator.h"
#include "platform/ScopedConnection.h"
#include "platform/gtk/WebRoom.h"
#include "themes/Theme.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/stack.h>

#include <memory>
#include <optional>

namespace corvel {

/// A sample note, rendered as every note is, in a theme.
class ThemePreview : public Gtk::Stack {
public:
    explicit ThemePreview(const Localisation& texts);
    ~ThemePreview() override;

    void show(const Theme& theme);
    /// The sample in the language of now.
    void relabel();

private:
    void makeWebView();
    void render();

    const Localisation& m_texts;
    std::optional<Theme> m_theme;
    Gtk::Box m_page;
    Gtk::Label m_unavailable;
    std::unique_ptr<WebRoom> m_room;
    std::unique_ptr<WebKitView> m_view;
    std::shared_ptr<PreviewCoordinator> m_coordinator;
    ScopedConnection m_makingView;
};

}  // namespace corvel
