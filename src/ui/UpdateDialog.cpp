#include "ui/UpdateDialog.h"

#include "app/Texts.h"
#include "app/UpdateCheck.h"
#include "app/texts/UpdateTexts.h"
#include "ui/Adw.h"

#include <giomm/appinfo.h>
#include <glibmm/error.h>
#include <gtkmm/spinner.h>

namespace corvel {

namespace {

constexpr const char* kOpen = "open";
constexpr const char* kClose = "close";
constexpr int kSpinnerSize = 32;

/// The dialog with what it shows; deletes itself with the window.
class UpdateDialog {
public:
    UpdateDialog(Gtk::Window& parent, const Localisation& texts)
        : m_parent(parent)
        , m_texts(texts)
        , m_dialog(ADW_MESSAGE_DIALOG(adw_message_dialog_new(parent.gobj(), nullptr, nullptr))) {
        adw_message_dialog_add_response(m_dialog, kClose, texts(texts::cancel));
        adw_message_dialog_set_close_response(m_dialog, kClose);
        auto* spinner = Gtk::make_managed<Gtk::Spinner>();
        spinner->set_size_request(kSpinnerSize, kSpinnerSize);
        spinner->start();
        adw_message_dialog_set_extra_child(m_dialog, GTK_WIDGET(spinner->gobj()));
        m_check.signalDone().connect([this] { done(); });
        g_signal_connect(m_dialog, "response", G_CALLBACK(answered), this);
        g_signal_connect_swapped(m_dialog, "destroy",
                                 G_CALLBACK(+[](UpdateDialog* self) { delete self; }), this);
        show();
        gtk_window_present(GTK_WINDOW(m_dialog));
    }

private:
    ~UpdateDialog() = default;

    void show() {
        adw_message_dialog_set_heading(m_dialog, m_check.heading(m_texts).c_str());
        adw_message_dialog_set_body(m_dialog, m_check.body(m_texts).c_str());
    }

    void done() {
        adw_message_dialog_set_extra_child(m_dialog, nullptr);
        adw_message_dialog_set_response_label(m_dialog, kClose, m_texts(texts::close));
        if (m_check.state() == UpdateCheck::State::newer) {
            adw_message_dialog_add_response(m_dialog, kOpen, m_texts(texts::updateOpenSoftware));
            adw_message_dialog_set_response_appearance(m_dialog, kOpen, ADW_RESPONSE_SUGGESTED);
            adw_message_dialog_set_default_response(m_dialog, kOpen);
            // The one button there was until now has the focus.
            auto* const window = GTK_WINDOW(m_dialog);
            gtk_window_set_focus(window, gtk_window_get_default_widget(window));
        }
        show();
    }

    static void answered(AdwMessageDialog*, const char* response, UpdateDialog* self) {
        if (std::string(response) == kOpen) openSoftware(self->m_parent, self->m_texts);
    }

    // Whatever the desktop has for it shows the program's own page.
    static void openSoftware(Gtk::Window& parent, const Localisation& texts) {
        const std::string page = "appstream:com.qno.corvel";
        const auto opened = [page, window = GTK_WINDOW(parent.gobj()),
                             &texts](Glib::RefPtr<Gio::AsyncResult>& result) {
            try {
                if (Gio::AppInfo::launch_default_for_uri_finish(result)) return;
            } catch (const Glib::Error&) {
                // Said below.
            }
            auto* dialog = adw_message_dialog_new(window, texts(texts::updateNewer),
                                                  texts(texts::updateNoSoftware));
            adw_message_dialog_add_response(ADW_MESSAGE_DIALOG(dialog), kClose,
                                            texts(texts::close));
            gtk_window_present(GTK_WINDOW(dialog));
        };
        Gio::AppInfo::launch_default_for_uri_async(page, opened);
    }

    Gtk::Window& m_parent;
    const Localisation& m_texts;
    AdwMessageDialog* m_dialog;
    UpdateCheck m_check;
};

}  // namespace

void showUpdateDialog(Gtk::Window& parent, const Localisation& texts) {
    new UpdateDialog(parent, texts);  // the window's end is its own
}

}  // namespace corvel
