#include "ui/NoteHeader.h"

#include "app/Texts.h"
#include "app/texts/LinkedFileTexts.h"
#include "export/ExportTexts.h"
#include "ui/Accessible.h"
#include "ui/LazyMenu.h"

#include <glibmm/convert.h>

#include <initializer_list>

namespace corvel {

namespace {

constexpr std::size_t kLongestPath = 60;  // characters

struct Mode {
    EditorMode mode;
    const Text& label;
};

constexpr std::array kModes{Mode{EditorMode::editor, texts::modeEditor},
                            Mode{EditorMode::split, texts::modeSplit},
                            Mode{EditorMode::preview, texts::modePreview}};

std::string windowAction(CommandID id) {
    return std::string("win.") + AppCommands::command(id).actionName;
}

std::string withShortcut(const std::string& name, CommandID id) {
    const std::string shortcut = AppCommands::shortcutText(id);
    return shortcut.empty() ? name : name + " (" + shortcut + ")";
}

// A menu is as wide as its longest line: of a long path the end says most.
Glib::ustring endOf(const Glib::ustring& path) {
    return path.size() <= kLongestPath ? path : "…" + path.substr(path.size() - kLongestPath);
}

bool isForFiles(CommandID id) {
    return id == CommandID::showInFolder || id == CommandID::stopTracking;
}

void hideWhenDisabled(Gio::MenuItem& item) {
    item.set_attribute_value("hidden-when",
                             Glib::Variant<Glib::ustring>::create("action-disabled"));
}

}  // namespace

NoteHeader::NoteHeader(Session& session) : m_session(session) {
    m_bar.setTitle(*Gtk::make_managed<Gtk::Box>());
    m_bar.setWindowControls(false, true);
    m_sidebar.set_icon_name("sidebar-show-symbolic");
    m_sidebar.set_action_name(windowAction(CommandID::toggleSidebar));
    m_sidebar.set_visible(false);
    m_bar.packStart(m_sidebar);
    addModes();
    addButtons();
    relabel();
    followMode();
}

void NoteHeader::addModes() {
    m_switch.add_css_class("mode-switch");
    m_switch.set_valign(Gtk::Align::CENTER);
    for (std::size_t index = 0; index < kModes.size(); ++index) {
        auto& button = m_modes.at(index);
        if (index > 0) button.set_group(m_modes.front());
        button.signal_toggled().connect([this, &button, mode = kModes.at(index).mode] {
            if (button.get_active()) m_session.state.editorMode.set(mode);
        });
        m_switch.append(button);
    }
    m_bar.packStart(m_switch);
}

void NoteHeader::addButtons() {
    m_export.set_icon_name("corvel-share-symbolic");
    m_export.set_action_name(windowAction(CommandID::exportNote));
    m_assistant.set_icon_name("corvel-sparkle-symbolic");
    m_assistant.set_action_name(windowAction(CommandID::assistant));
    m_assistantShown =
        m_session.state.isAIAssistantVisible.signalChanged().connect([this] { followAssistant(); });
    followAssistant();
    m_menu.set_icon_name("open-menu-symbolic");
    m_file.set_icon_name("corvel-file-symbolic");
    m_file.set_visible(false);
    m_bar.packEnd(m_menu);
    m_bar.packEnd(m_assistant);
    m_bar.packEnd(m_export);
    m_bar.packEnd(m_file);
}

void NoteHeader::followAssistant() {
    const bool isShown = m_session.state.isAIAssistantVisible.get();
    if (isShown) {
        m_assistant.add_css_class("pressed");
    } else {
        m_assistant.remove_css_class("pressed");
    }
    gtk_accessible_update_state(
        GTK_ACCESSIBLE(m_assistant.gobj()), GTK_ACCESSIBLE_STATE_PRESSED,
        isShown ? GTK_ACCESSIBLE_TRISTATE_TRUE : GTK_ACCESSIBLE_TRISTATE_FALSE, -1);
}

Glib::RefPtr<Gio::Menu> NoteHeader::noteMenu() const {
    auto menu = Gio::Menu::create();
    for (const auto& ids :
         {std::initializer_list<CommandID>{CommandID::togglePin, CommandID::toggleArchive},
          {CommandID::readerMode, CommandID::exportNote, CommandID::sendAsEmail},
          {CommandID::saveAsLocalFile, CommandID::showInFolder, CommandID::stopTracking},
          {CommandID::moveToTrash}}) {
        const auto section = Gio::Menu::create();
        for (const CommandID id : ids) {
            const auto item = Gio::MenuItem::create(m_session.texts(AppCommands::command(id).label),
                                                    windowAction(id));
            if (isForFiles(id)) hideWhenDisabled(*item.get());
            section->append_item(item);
        }
        menu->append_section(section);
    }
    return menu;
}

Glib::RefPtr<Gio::Menu> NoteHeader::fileMenu(const std::string& path) const {
    const auto section = Gio::Menu::create();
    for (const auto id :
         {CommandID::showInFolder, CommandID::saveAsLocalFile, CommandID::stopTracking}) {
        section->append(m_session.texts(AppCommands::command(id).label), windowAction(id));
    }
    auto menu = Gio::Menu::create();
    menu->append_section(endOf(path), section);
    return menu;
}

void NoteHeader::followFile() {
    const auto& note = m_session.editor.note();
    const bool isLinked = note && note->sourceFilePath;
    m_file.set_visible(isLinked);
    if (!isLinked) return;
    const std::string path = Glib::filename_display_name(*note->sourceFilePath);
    labelControl(m_file, m_session.texts.format(texts::localFileAt, {path}));
    setLazyMenu(m_file, fileMenu(path));
}

void NoteHeader::relabel() {
    const auto& say = m_session.texts;
    for (std::size_t index = 0; index < kModes.size(); ++index) {
        m_modes.at(index).set_label(say(kModes.at(index).label));
    }
    const std::string exportName = say(texts::exportButton);
    const std::string assistantName = say(texts::assistantButton);
    labelControl(m_export, exportName, withShortcutNames(say(texts::exportTooltip)));
    labelControl(m_assistant, assistantName, withShortcut(assistantName, CommandID::assistant));
    labelControl(m_menu, say(texts::noteMenu));
    labelControl(m_sidebar, say(texts::showSidebar));
    setLazyMenu(m_menu, noteMenu());
    followFile();
}

void NoteHeader::followMode() {
    for (std::size_t index = 0; index < kModes.size(); ++index) {
        if (kModes.at(index).mode == m_session.state.editorMode.get()) {
            m_modes.at(index).set_active(true);
        }
    }
}

void NoteHeader::setHasNote(bool hasNote) {
    m_switch.set_visible(hasNote);
    m_menu.set_visible(hasNote);
    followFile();
}

}  // namespace corvel
