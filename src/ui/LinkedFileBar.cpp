#include "ui/LinkedFileBar.h"

#include "app/LinkFaultText.h"
#include "app/texts/LinkedFileTexts.h"
#include "ui/Accessible.h"
#include "ui/FilePaths.h"

#include <glibmm/convert.h>
#include <glibmm/main.h>

#include <utility>

namespace corvel {

namespace {

constexpr int kGap = 12;
constexpr int kShortestLine = 14;  // characters

bool isShownFor(LinkState::Kind kind) {
    return kind != LinkState::Kind::none && kind != LinkState::Kind::inStep;
}

}  // namespace

LinkedFileBar::LinkedFileBar(Session& session, Callbacks callbacks)
    : m_session(session), m_callbacks(std::move(callbacks)) {
    m_bar.set_spacing(kGap / 2);
    m_bar.add_css_class("note-notice");
    m_text.set_hexpand(true);
    m_text.set_xalign(0);
    m_text.set_wrap(true);
    m_text.set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    m_text.set_width_chars(kShortestLine);
    m_text.set_max_width_chars(kShortestLine);
    m_buttons.set_spacing(kGap / 2);
    m_buttons.set_valign(Gtk::Align::CENTER);
    m_bar.append(m_text);
    m_bar.append(m_buttons);
    set_child(m_bar);
    m_connections.emplace_back(
        session.linkedFile.signalStateChanged().connect([this] { refresh(); }));
    refresh();
}

std::string LinkedFileBar::message() const {
    const auto& say = m_session.texts;
    const auto& state = m_session.linkedFile.state();
    const std::string name = shownName(state.path);
    const std::string reason = state.error ? reasonOf(*state.error, say) : std::string();
    switch (state.kind) {
        case LinkState::Kind::conflict:
            return say.format(texts::fileConflict, {name});
        case LinkState::Kind::vanished:
            return say.format(texts::fileVanished, {name});
        case LinkState::Kind::unreadable:
            return say.format(texts::fileUnreadable, {name, reason});
        case LinkState::Kind::unwritable:
            return say.format(texts::fileUnwritable, {name, reason});
        default:
            return {};
    }
}

void LinkedFileBar::refresh() {
    const auto kind = m_session.linkedFile.state().kind;
    const bool isShown = isShownFor(kind);
    if (isShown) {
        m_text.set_text(message());
        setTooltip(m_text, Glib::filename_display_name(m_session.linkedFile.state().path.string()));
        // A button that has the focus must not go while its matter is the same.
        const char* language = m_session.texts.languageCode();
        if (m_shown != kind || m_language != std::string(language)) fillButtons();
        m_language = language;
    }
    m_shown = kind;
    const bool losesFocus =
        !isShown && gtk_widget_get_focus_child(GTK_WIDGET(m_buttons.gobj())) != nullptr;
    set_visible(isShown);
    set_reveal_child(isShown);
    if (losesFocus && m_callbacks.giveFocus) m_callbacks.giveFocus();
}

void LinkedFileBar::fillButtons() {
    while (auto* child = m_buttons.get_first_child())
        m_buttons.remove(*child);
    const auto check = [this] { m_session.linkedFile.check(); };
    switch (m_session.linkedFile.state().kind) {
        case LinkState::Kind::conflict:
            addButton(texts::compareVersions, m_callbacks.compare);
            break;
        case LinkState::Kind::vanished:
            addButton(texts::locate, m_callbacks.locate);
            addButton(texts::saveAgain, m_callbacks.saveAgain);
            addButton(texts::keepAsNote, [this] { keepAsOrdinary(); });
            break;
        case LinkState::Kind::unreadable:
            addButton(texts::tryAgain, check);
            addButton(texts::keepAsNote, [this] { keepAsOrdinary(); });
            break;
        case LinkState::Kind::unwritable:
            addButton(texts::tryAgain, check);
            addButton(texts::saveElsewhere, m_callbacks.saveElsewhere);
            break;
        default:
            break;
    }
}

void LinkedFileBar::addButton(const Text& label, const std::function<void()>& pressed) {
    // Large text in a narrow window: a name takes two lines rather than the window made wider.
    auto& name = *Gtk::make_managed<Gtk::Label>(m_session.texts(label));
    name.set_wrap(true);
    name.set_wrap_mode(Pango::WrapMode::WORD);
    name.set_justify(Gtk::Justification::CENTER);
    auto& button = *Gtk::make_managed<Gtk::Button>();
    button.add_css_class("text-button");
    button.set_child(name);
    setTooltip(button, m_session.texts(label));
    setAccessibleLabel(button, m_session.texts(label));
    // What is pressed may take the button away.
    button.signal_clicked().connect([this, pressed] {
        m_pressed = Glib::signal_idle().connect([pressed] {
            pressed();
            return false;
        });
    });
    m_buttons.append(button);
    // One button has room beside the text, several stand below it.
    const bool isOne = m_buttons.get_first_child() == m_buttons.get_last_child();
    m_bar.set_orientation(isOne ? Gtk::Orientation::HORIZONTAL : Gtk::Orientation::VERTICAL);
}

void LinkedFileBar::keepAsOrdinary() {
    m_session.linkedFile.keepAsOrdinary();
}

}  // namespace corvel
