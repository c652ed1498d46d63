#include "ui/AboutWindow.h"

#include "app/Texts.h"
#include "platform/Version.h"
#include "ui/Adw.h"

namespace corvel {

void showAboutWindow(Gtk::Window& parent, const Localisation& texts) {
    auto* about = ADW_ABOUT_WINDOW(adw_about_window_new());
    adw_about_window_set_application_name(about, texts(texts::programName));
    adw_about_window_set_application_icon(about, "com.qno.corvel");
    adw_about_window_set_version(about, version());
    adw_about_window_set_comments(about, texts(texts::aboutComment));
    gtk_window_set_transient_for(GTK_WINDOW(about), parent.gobj());
    gtk_window_set_modal(GTK_WINDOW(about), TRUE);
    gtk_window_present(GTK_WINDOW(about));
}

}  // namespace corvel
