#include "ui/Dialogs.h"

#include "ui/Accessible.h"
#include "ui/Adw.h"

#include <gtkmm/entry.h>

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
    adw_message_dialog_set_default_response(dialog, safe.id.c_str());
    return dialog;
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
