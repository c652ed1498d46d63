#include "ui/ThemePicker.h"

#include "app/Texts.h"
#include "app/texts/ThemeTexts.h"
#include "themes/ThemeFile.h"
#include "ui/Accessible.h"
#include "ui/Dialogs.h"
#include "ui/FilePaths.h"
#include "ui/TextScale.h"

#include <glibmm/convert.h>
#include <glibmm/main.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/filefilter.h>
#include <gtkmm/scrolledwindow.h>

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

constexpr int kWidth = 820;
constexpr int kHeight = 640;

bool isSame(const Theme& a, const Theme& b) {
    return a.id == b.id;
}

}  // namespace

ThemePicker::ThemePicker(Session& session, Gtk::Window& parent)
    : m_session(session)
    , m_themes(session.themes)
    , m_window(adw_window_new(), parent)
    , m_labels(session.texts, session.preferences) {
    build();
    buildDrop();
    m_labels.add(texts::themes, [this](const auto& text) {
        window().set_title(text);
        setAccessibleLabel(m_grid, text);
    });
    m_labels.add(texts::importTheme, [this](const auto& text) { m_import.set_label(text); });
    m_labels.add(texts::newTheme, [this](const auto& text) { labelControl(m_new, text); });
    m_labels.add([this] { fill(); });
    m_connections.emplace_back(m_themes.signalCurrentChanged().connect([this] { markCurrent(); }));
    // A card must outlive the click that changes the list.
    m_connections.emplace_back(m_themes.signalAvailableChanged().connect([this] {
        m_filling = Glib::signal_idle().connect(
            [this] {
                fill();
                return false;
            },
            Glib::PRIORITY_HIGH_IDLE);
    }));
}

void ThemePicker::build() {
    adw::HeaderBar bar;
    m_new.set_icon_name("list-add-symbolic");
    m_new.signal_clicked().connect([this] {
        const char* name = m_session.texts(texts::newTheme);
        edit(ThemeDraft::copying(m_themes.currentTheme(), name, m_themes));
    });
    m_import.signal_clicked().connect([this] { chooseFiles(); });
    bar.packStart(m_new);
    bar.packEnd(m_import);

    m_grid.set_selection_mode(Gtk::SelectionMode::NONE);
    m_grid.set_homogeneous(true);
    m_grid.set_min_children_per_line(1);
    m_grid.set_max_children_per_line(6);
    m_grid.set_column_spacing(16);
    m_grid.set_row_spacing(20);
    m_grid.set_margin(24);
    m_grid.set_valign(Gtk::Align::START);
    auto& scroller = *Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller.set_child(m_grid);
    scroller.set_vexpand(true);
    m_toasts.setChild(scroller);

    auto& content = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    content.append(bar.widget());
    content.append(m_toasts.widget());
    adw_window_set_content(ADW_WINDOW(window().gobj()), GTK_WIDGET(content.gobj()));
    window().set_default_size(widthForText(kWidth), kHeight);
    window().set_size_request(360, 320);
    m_window.closeOnEscape();
    m_toasts.undoByKey(window(), m_session.texts);
    addKeys();
}

// The grid's own keys move between cells, not between what stands in them.
void ThemePicker::addKeys() {
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType) { return moveFocus(key); }, false);
    m_grid.add_controller(keys);
}

bool ThemePicker::moveFocus(guint key) {
    const auto focused =
        std::ranges::find_if(m_cards, [](auto* card) { return card->button().has_focus(); });
    if (focused == m_cards.end()) return false;
    const auto row = [](auto* card) { return card->get_parent()->get_allocation().get_y(); };
    const auto columns = std::ranges::count(m_cards, row(m_cards.front()), row);
    const auto step = key == GDK_KEY_Right  ? 1
                      : key == GDK_KEY_Left ? -1
                      : key == GDK_KEY_Down ? columns
                      : key == GDK_KEY_Up   ? -columns
                                            : 0;
    const auto target = focused - m_cards.begin() + step;
    if (step == 0 || target < 0 || target >= std::ssize(m_cards)) return false;
    m_cards[static_cast<std::size_t>(target)]->focusCard();
    return true;
}

void ThemePicker::buildDrop() {
    window().add_controller(fileDropTarget([this](const auto& files) { importFiles(files); }));
}

void ThemePicker::fill() {
    auto* focus = window().get_focus();
    const bool hadFocus = focus != nullptr && focus->is_ancestor(m_grid);
    while (auto* child = m_grid.get_first_child())
        m_grid.remove(*child);
    m_cards.clear();
    for (const Theme& theme : m_themes.availableThemes())
        addCard(theme);
    markCurrent();
    if (hadFocus) focusCurrent();
}

void ThemePicker::focusCurrent() {
    const auto current =
        std::ranges::find_if(m_cards, [](auto* card) { return card->button().get_active(); });
    if (current != m_cards.end()) (*current)->focusCard();
}

void ThemePicker::present() {
    if (!window().get_visible()) focusCurrent();
    m_window.present();
}

void ThemePicker::addCard(const Theme& theme) {
    auto* card = Gtk::make_managed<ThemeCard>(theme, m_session.texts);
    if (!m_cards.empty()) card->button().set_group(m_cards.front()->button());
    card->signalChosen().connect([this, card] { m_themes.selectTheme(card->theme()); });
    card->signalAction().connect(
        [this, card](ThemeCard::Action action) { perform(Theme(card->theme()), action); });
    m_cards.push_back(card);
    m_grid.append(*card);
    auto& cell = *card->get_parent();
    cell.set_focusable(false);
    setAccessibleLabel(cell, theme.name);
}

void ThemePicker::markCurrent() {
    const Theme& current = m_themes.currentTheme();
    const auto exact = std::ranges::find(m_cards, current, &ThemeCard::theme);
    for (auto* card : m_cards) {
        // Several files may hold one id.
        const bool isCurrent =
            exact != m_cards.end() ? card == *exact : isSame(card->theme(), current);
        if (isCurrent || card->button().get_active()) card->setCurrent(isCurrent);
    }
}

void ThemePicker::perform(const Theme& theme, ThemeCard::Action action) {
    const auto& texts = m_session.texts;
    switch (action) {
        case ThemeCard::Action::edit:
            return edit(ThemeDraft::editing(theme));
        case ThemeCard::Action::duplicate:
            return edit(
                ThemeDraft::copying(theme, texts.format(texts::copyOf, {theme.name}), m_themes));
        case ThemeCard::Action::remove:
            return remove(theme);
    }
}

void ThemePicker::edit(const ThemeDraft& draft) {
    if (m_editor && m_editor->window().get_visible()) {
        m_editor->present();  // one at a time: what is in it is not thrown away
        return;
    }
    m_closing.disconnect();
    m_editor = std::make_unique<ThemeEditor>(m_session, draft, window());
    m_editor->signalSaved().connect([this](const Theme& theme) {
        m_toasts.show(m_session.texts.format(texts::themeSaved, {theme.name}));
    });
    // The process behind its sample goes with it.
    m_editor->window().signal_hide().connect([this] {
        m_closing = Glib::signal_idle().connect([this] {
            m_editor.reset();
            return false;
        });
    });
    m_editor->present();
}

void ThemePicker::remove(const Theme& theme) {
    const auto& texts = m_session.texts;
    const auto before = m_themes.availableThemes();
    const Theme current = m_themes.currentTheme();
    m_themes.deleteTheme(theme);
    const auto& after = m_themes.availableThemes();
    std::vector<Theme> gone;
    std::ranges::copy_if(before, std::back_inserter(gone), [&after](const Theme& one) {
        return std::ranges::find(after, one) == after.end();
    });
    if (std::ranges::find(gone, theme) == gone.end()) {
        m_toasts.show(texts.format(texts::themeNotDeleted, {theme.name}),
                      texts(texts::openThemesFolder),
                      [this] { openInDesktop(m_themes.themesDirectory()); });
        return;
    }
    m_toasts.show(texts.format(texts::themeDeleted, {theme.name}), texts(texts::undo),
                  [this, gone, current] { putBack(gone, current); });
}

void ThemePicker::putBack(const std::vector<Theme>& themes, const Theme& current) {
    for (const Theme& theme : themes) {
        if (!m_themes.saveTheme(theme)) m_toasts.show(m_session.texts(texts::themeNotSaved));
        if (isSame(theme, current)) m_themes.selectTheme(theme);
    }
}

void ThemePicker::chooseFiles() {
    const auto& texts = m_session.texts;
    m_chooser = Gtk::FileChooserNative::create(texts(texts::importTheme), window(),
                                               Gtk::FileChooser::Action::OPEN,
                                               texts(texts::importThemeVerb), texts(texts::cancel));
    m_chooser->set_modal(true);
    m_chooser->set_select_multiple(true);
    const auto themes = Gtk::FileFilter::create();
    themes->set_name(texts(texts::themeFiles));
    themes->add_pattern("*.qnotheme");
    themes->add_pattern("*.json");
    m_chooser->add_filter(themes);
    m_chooser->signal_response().connect([this](int response) {
        const auto held = std::exchange(m_chooser, {});
        held->hide();
        if (response == GTK_RESPONSE_ACCEPT) importFiles(chosenFiles(*held));
    });
    m_chooser->show();
}

void ThemePicker::importFiles(const std::vector<std::filesystem::path>& files) {
    m_waiting.insert(m_waiting.begin(), files.rbegin(), files.rend());
    importNext();
}

// One after the other: any of them may need an answer first.
void ThemePicker::importNext() {
    if (m_waiting.empty()) return;
    const auto file = m_waiting.back();
    m_waiting.pop_back();
    const auto& texts = m_session.texts;
    const auto theme = ThemeManager::read(file);
    if (!theme) {
        const auto name = Glib::filename_display_name(file.filename().string());
        m_toasts.show(texts.format(texts::themeUnreadable, {name}));
        return importNext();
    }
    if (!takesPlaceOfAnother(*theme, m_themes)) return importFile(file, *theme);
    askToReplace(window(), texts, themeFileName(*theme), [this, file, theme](bool replaces) {
        if (replaces) return importFile(file, *theme);
        importNext();
    });
}

void ThemePicker::importFile(const std::filesystem::path& file, const Theme& theme) {
    const auto& texts = m_session.texts;
    m_toasts.show(m_themes.importTheme(file) ? texts.format(texts::themeImported, {theme.name})
                                             : texts(texts::themeNotSaved));
    importNext();
}

}  // namespace corvel
