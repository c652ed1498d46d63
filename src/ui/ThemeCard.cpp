#include "ui/ThemeCard.h"

#include "app/texts/ThemeTexts.h"
#include "ui/Accessible.h"
#include "ui/ThemeSample.h"

#include <giomm/menu.h>
#include <gtkmm/gestureclick.h>
#include <gtkmm/label.h>
#include <gtkmm/overlay.h>
#include <gtkmm/shortcutcontroller.h>

#include <utility>

namespace corvel {

namespace {

constexpr const char* kGroup = "theme";

Glib::RefPtr<Gtk::Shortcut> shortcut(const char* keys, const char* action) {
    return Gtk::Shortcut::create(Gtk::ShortcutTrigger::parse_string(keys),
                                 Gtk::NamedAction::create(action));
}

}  // namespace

ThemeCard::ThemeCard(Theme theme, const Localisation& texts)
    : Gtk::Box(Gtk::Orientation::VERTICAL, 6)
    , m_theme(std::move(theme))
    , m_texts(texts)
    , m_actions(Gio::SimpleActionGroup::create()) {
    buildSample();
    buildCaption();
    buildMenu();
    addKeys();
}

void ThemeCard::buildSample() {
    auto& sample = *Gtk::make_managed<ThemeSample>(m_theme, m_texts);
    sample.set_overflow(Gtk::Overflow::HIDDEN);
    m_button.set_child(sample);
    m_button.add_css_class("theme-card");
    m_button.set_overflow(Gtk::Overflow::HIDDEN);
    setAccessibleLabel(m_button, m_theme.name + ", " + kind());
    m_button.signal_toggled().connect([this] { m_mark.set_visible(m_button.get_active()); });
    m_button.signal_clicked().connect([this] { m_chosen.emit(); });
    m_mark.set_from_icon_name("object-select-symbolic");
    m_mark.add_css_class("theme-mark");
    m_mark.set_halign(Gtk::Align::END);
    m_mark.set_valign(Gtk::Align::START);
    m_mark.set_can_target(false);
    m_mark.set_visible(false);
    auto& overlay = *Gtk::make_managed<Gtk::Overlay>();
    overlay.set_child(m_button);
    overlay.add_overlay(m_mark);
    append(overlay);
}

std::string ThemeCard::kind() const {
    const bool isDark = m_theme.appearance == Appearance::dark;
    return std::string(m_texts(isDark ? texts::dark : texts::light)) + " · " +
           m_texts(m_theme.isBuiltIn ? texts::builtIn : texts::ownTheme);
}

void ThemeCard::buildCaption() {
    auto& name = *Gtk::make_managed<Gtk::Label>(m_theme.name);
    name.add_css_class("heading");
    auto& detail = *Gtk::make_managed<Gtk::Label>(kind());
    detail.add_css_class("caption");
    detail.add_css_class("dim-label");
    auto& words = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 2);
    for (auto* label : {&name, &detail}) {
        label->set_xalign(0);
        label->set_ellipsize(Pango::EllipsizeMode::END);
        label->set_max_width_chars(1);  // the sample alone decides how wide a card is
        label->set_hexpand(true);
        words.append(*label);
    }
    name.set_tooltip_text(m_theme.name);
    m_menu.set_icon_name("view-more-symbolic");
    m_menu.add_css_class("flat");
    m_menu.set_valign(Gtk::Align::CENTER);
    labelControl(m_menu, m_texts.format(texts::themeActions, {m_theme.name}));
    auto& caption = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 4);
    caption.set_margin_start(4);
    caption.append(words);
    caption.append(m_menu);
    append(caption);
}

void ThemeCard::addAction(const char* name, Action action) {
    m_actions->add_action(name, [this, action] { m_action.emit(action); });
}

void ThemeCard::buildMenu() {
    const auto menu = Gio::Menu::create();
    addAction("duplicate", Action::duplicate);
    if (!m_theme.isBuiltIn) {
        addAction("edit", Action::edit);
        addAction("remove", Action::remove);
        menu->append(m_texts(texts::edit), "theme.edit");
    }
    menu->append(m_texts(texts::duplicate), "theme.duplicate");
    if (!m_theme.isBuiltIn) {
        const auto last = Gio::Menu::create();
        last->append(m_texts(texts::deleteTheme), "theme.remove");
        menu->append_section(last);
    }
    insert_action_group(kGroup, m_actions);
    m_menu.set_menu_model(menu);

    const auto click = Gtk::GestureClick::create();
    click->set_button(GDK_BUTTON_SECONDARY);
    click->signal_pressed().connect([this](int, double, double) { m_menu.popup(); });
    m_button.add_controller(click);
}

void ThemeCard::addKeys() {
    const auto keys = Gtk::ShortcutController::create();
    keys->add_shortcut(shortcut("F2", "theme.edit"));
    keys->add_shortcut(shortcut("Delete", "theme.remove"));
    const auto openMenu = Gtk::CallbackAction::create([this](Gtk::Widget&, const auto&) {
        m_menu.popup();
        return true;
    });
    keys->add_shortcut(
        Gtk::Shortcut::create(Gtk::ShortcutTrigger::parse_string("Menu|<Shift>F10"), openMenu));
    m_button.add_controller(keys);
}

void ThemeCard::setCurrent(bool isCurrent) {
    m_button.set_active(isCurrent);
}

}  // namespace corvel
