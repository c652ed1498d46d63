#include "ui/Dialogs.h"

#include "ui/Accessible.h"
#include "ui/Adw.h"

#include <gdk/gdkkeysyms.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/entry.h>
#include <gtkmm/eventcontrollerkey.h>

#include <utility>

namespace corvel {

namespace {

using Answered = std::function<void(const std::string&)>;

AdwResponseAppearance appearance(DialogAnswer::Look look) {
    switch (look) {
        case DialogAnswer::Look::suggested:
            return ADW_RESPONSE_SUGGESTED;
        case DialogAnswer::Look::destructive:
            return ADW_RESPONSE_DESTRUCTIVE;
        case DialogAnswer::Look::plain:
            break;
    }
    return ADW_RESPONSE_DEFAULT;
}

AdwMessageDialog* makeDialog(Gtk::Window& parent, const Question& question) {
    auto* dialog = ADW_MESSAGE_DIALOG(
        adw_message_dialog_new(parent.gobj(), question.heading.c_str(),
                               question.body.empty() ? nullptr : question.body.c_str()));
    for (const auto& answer : question.answers) {
        adw_message_dialog_add_response(dialog, answer.id.c_str(), answer.label.c_str());
        adw_message_dialog_set_response_appearance(dialog, answer.id.c_str(),
                                                   appearance(answer.look));
    }
    const auto& safe = question.answers.front();
    adw_message_dialog_set_close_response(dialog, safe.id.c_str());
    const auto& preset = question.preset.empty() ? safe.id : question.preset;
    adw_message_dialog_set_default_response(dialog, preset.c_str());
    return dialog;
}

// The toolkit has Enter toggle a check box, as the space bar does. The question is what it is for.
void letEnterAnswer(Gtk::Widget& field) {
    const auto keys = Gtk::EventControllerKey::create();
    keys->signal_key_pressed().connect(
        [&field](guint key, guint, Gdk::ModifierType) {
            const bool isEnter =
                key == GDK_KEY_Return || key == GDK_KEY_KP_Enter || key == GDK_KEY_ISO_Enter;
            if (isEnter) field.activate_default();
            return isEnter;
        },
        false);
    field.add_controller(keys);
}

void onResponse(AdwMessageDialog* dialog, Answered answered) {
    g_signal_connect_data(
        dialog, "response", G_CALLBACK(+[](AdwMessageDialog*, const char* id, gpointer data) {
            (*static_cast<Answered*>(data))(id);
        }),
        new Answered(std::move(answered)),
        +[](gpointer data, GClosure*) { delete static_cast<Answered*>(data); }, G_CONNECT_DEFAULT);
}

bool isBlank(const std::string& text) {
    return text.find_first_not_of(" \t\n") == std::string::npos;
}

}  // namespace

void ask(Gtk::Window& parent, const Question& question, Answered answered, Gtk::Widget* extra) {
    auto* dialog = makeDialog(parent, question);
    if (extra != nullptr) adw_message_dialog_set_extra_child(dialog, extra->gobj());
    if (auto* box = dynamic_cast<Gtk::CheckButton*>(extra)) letEnterAnswer(*box);
    onResponse(dialog, std::move(answered));
    gtk_window_present(GTK_WINDOW(dialog));
}

void askForText(Gtk::Window& parent, const TextQuestion& question, Answered confirmed) {
    const Question frame{question.heading,
                         {},
                         {{"cancel", question.cancel},
                          {"confirm", question.confirm, DialogAnswer::Look::suggested}}};
    auto* dialog = makeDialog(parent, frame);
    auto* entry = Gtk::make_managed<Gtk::Entry>();
    setAccessibleLabel(*entry, question.fieldName);
    entry->set_placeholder_text(question.fieldName);
    entry->set_text(question.text);
    entry->set_activates_default(true);
    const auto update = [dialog, entry] {
        adw_message_dialog_set_response_enabled(dialog, "confirm", !isBlank(entry->get_text()));
    };
    entry->signal_changed().connect(update);
    update();
    adw_message_dialog_set_extra_child(dialog, GTK_WIDGET(entry->gobj()));
    adw_message_dialog_set_default_response(dialog, "confirm");
    onResponse(dialog, [entry, done = std::move(confirmed)](const std::string& id) {
        if (id == "confirm") done(entry->get_text());
    });
    gtk_window_present(GTK_WINDOW(dialog));
    entry->grab_focus();
}

}  // namespace corvel
