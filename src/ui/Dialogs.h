#pragma once

#include <gtkmm/window.h>

#include <functional>
#include <string>
#include <vector>

namespace corvel {

/// One answer of a question.
struct DialogAnswer {
    enum class Look { plain, suggested, destructive };

    std::string id;
    std::string label;
    Look look = Look::plain;
};

/// A question with verbs as buttons. The first answer is the safe one: Escape gives it, and Enter
/// does unless another is preset.
struct Question {
    std::string heading;
    std::string body;
    std::vector<DialogAnswer> answers;
    std::string preset = {};  ///< id of the answer that Enter gives
};

/// Asks in a dialog of `parent`; `answered` is called once, with the id of the chosen answer. A
/// widget given as `extra` stands between text and buttons; Enter answers in a check box as well.
void ask(Gtk::Window& parent,
         const Question& question,
         std::function<void(const std::string& id)> answered,
         Gtk::Widget* extra = nullptr);

struct TextQuestion {
    std::string heading;
    std::string fieldName;
    std::string text;  ///< what the field starts with, selected
    std::string cancel;
    std::string confirm;
};

/// Asks for one line of text, which must not be blank; `confirmed` is not called on cancel.
void askForText(Gtk::Window& parent,
                const TextQuestion& question,
                std::function<void(const std::string& text)> confirmed);

}  // namespace corvel
