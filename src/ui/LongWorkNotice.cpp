#include "ui/LongWorkNotice.h"

#include "app/texts/DesktopTexts.h"
#include "ui/AppActions.h"

#include <giomm/application.h>
#include <giomm/notification.h>
#include <glibmm/convert.h>
#include <gtkmm/window.h>

#include <algorithm>

namespace corvel {

namespace {

/// One notification: news of later work takes the place of what was said before.
constexpr const char* kId = "long-work";

bool isWatched() {
    const auto windows = Gtk::Window::list_toplevels();
    return std::ranges::any_of(windows, [](const auto* window) { return window->is_active(); });
}

}  // namespace

void LongWorkNotice::ended(const std::string& title,
                           const std::string& body,
                           const std::optional<std::filesystem::path>& place) const {
    const auto application = Gio::Application::get_default();
    if (!application || Clock::now() - m_begin < kLong || isWatched()) return;
    const auto notification = Gio::Notification::create(title);
    notification->set_body(body);
    if (place) {
        notification->add_button(m_texts(texts::showInFolder), AppActions::kShowInFolder,
                                 Glib::filename_to_uri(place->string()));
    }
    application->send_notification(kId, notification);
}

}  // namespace corvel
