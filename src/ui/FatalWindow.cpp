#include "ui/FatalWindow.h"

#include "app/Texts.h"
#include "app/texts/StoreTexts.h"
#include "platform/Paths.h"
#include "ui/Adw.h"

#include <gdkmm/display.h>
#include <glibmm/convert.h>

#include <string>

namespace corvel {

void showFatalWindow(std::string_view message) {
    if (!Gdk::Display::get_default()) return;
    UserDefaults defaults(paths::preferencesFile());
    const Preferences preferences(defaults);
    const Localisation texts(preferences);
    const auto folder = Glib::filename_display_name(paths::applicationSupport().string());
    const auto body =
        std::string(message) + "\n\n" + texts.format(texts::cannotStartDetail, {folder});
    auto* loop = g_main_loop_new(nullptr, FALSE);
    auto* dialog = ADW_MESSAGE_DIALOG(
        adw_message_dialog_new(nullptr, texts(texts::cannotStart), body.c_str()));
    adw_message_dialog_add_response(dialog, "close", texts(texts::close));
    adw_message_dialog_set_close_response(dialog, "close");
    adw_message_dialog_set_default_response(dialog, "close");
    adw::connect(dialog, "response", [loop] { g_main_loop_quit(loop); });
    gtk_window_present(GTK_WINDOW(dialog));
    g_main_loop_run(loop);
    g_main_loop_unref(loop);
}

}  // namespace corvel
