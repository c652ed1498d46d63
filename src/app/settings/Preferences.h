#pragma once

#include "platform/UserDefaults.h"

#include <string>

namespace corvel {

enum class EditorMode { editor, split, preview };
enum class UISize { small, normal, large };
/// What is done with Markdown files that are opened from outside the program.
enum class ExternalFileUse { ask, import, link, preview };

std::string rawValue(EditorMode mode);
std::string rawValue(UISize size);
std::string rawValue(ExternalFileUse use);
/// `ask` for an unknown name.
ExternalFileUse externalFileUseFrom(const std::string& name);
/// Factor for every font size of the interface: 0.85, 1.0 or 1.2.
double fontScale(UISize size);

/// The user's preferences, typed and with their defaults. Each is read from the store at each use
/// and written at once.
class Preferences {
public:
    explicit Preferences(UserDefaults& defaults) : m_defaults(defaults) {}

    std::string appLanguage() const { return m_defaults.string("appLanguage").value_or("pl"); }
    UISize uiSize() const;
    double editorFontSize() const { return m_defaults.real("editorFontSize").value_or(15.0); }
    double editorLineSpacing() const { return m_defaults.real("editorLineSpacing").value_or(1.6); }
    bool autoCloseBrackets() const {
        return m_defaults.boolean("autoCloseBrackets").value_or(true);
    }
    bool spellChecking() const { return m_defaults.boolean("spellChecking").value_or(true); }
    /// Seconds between an edit and its saving; at least a tenth of a second.
    double autoSaveInterval() const;
    EditorMode defaultEditorMode() const;
    ExternalFileUse openExternalFiles() const {
        return externalFileUseFrom(m_defaults.string("openExternalFiles").value_or(""));
    }
    /// Whether previews may fetch images from the web.
    bool loadRemoteImages() const { return m_defaults.boolean("loadRemoteImages").value_or(true); }
    int trashRetentionDays() const { return m_defaults.integer("trashRetentionDays").value_or(30); }
    std::string aiProvider() const { return m_defaults.string("aiProvider").value_or("claude"); }
    /// The model chosen for "claude", "openai" or "gemini"; empty for another provider.
    std::string aiModel(const std::string& provider) const;

    void setAppLanguage(const std::string& code) { m_defaults.setString("appLanguage", code); }
    void setUISize(UISize size) { m_defaults.setString("uiSize", rawValue(size)); }
    void setEditorFontSize(double points) { m_defaults.setReal("editorFontSize", points); }
    void setEditorLineSpacing(double factor) { m_defaults.setReal("editorLineSpacing", factor); }
    void setAutoCloseBrackets(bool on) { m_defaults.setBoolean("autoCloseBrackets", on); }
    void setSpellChecking(bool on) { m_defaults.setBoolean("spellChecking", on); }
    void setAutoSaveInterval(double seconds) { m_defaults.setReal("autoSaveInterval", seconds); }
    void setDefaultEditorMode(EditorMode mode) {
        m_defaults.setString("defaultEditorMode", rawValue(mode));
    }
    void setOpenExternalFiles(ExternalFileUse use) {
        m_defaults.setString("openExternalFiles", rawValue(use));
    }
    void setLoadRemoteImages(bool on) { m_defaults.setBoolean("loadRemoteImages", on); }
    void setTrashRetentionDays(int days) { m_defaults.setInteger("trashRetentionDays", days); }
    void setAIProvider(const std::string& provider) {
        m_defaults.setString("aiProvider", provider);
    }
    void setAIModel(const std::string& provider, const std::string& model) {
        m_defaults.setString("aiModel_" + provider, model);
    }

    /// For what windows remember of themselves: sizes, positions, the last note.
    UserDefaults& store() const { return m_defaults; }
    sigc::signal<void(const std::string&)>& signalChanged() const {
        return m_defaults.signalChanged();
    }

private:
    UserDefaults& m_defaults;
};

}  // namespace corvel
