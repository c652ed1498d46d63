#pragma once

#include <glibmm/keyfile.h>
#include <sigc++/signal.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// The per-user preference store: a flat list of keys, one value each, kept in one key file
/// (freedesktop.org Desktop Entry syntax). A value is written to disk before its setter returns; a
/// file that cannot be written is ignored and the value holds for this run. A value of the wrong
/// type reads as absent.
class UserDefaults {
public:
    /// `file` need not exist; its folder is created at the first write.
    explicit UserDefaults(std::filesystem::path file);

    std::optional<std::string> string(const std::string& key) const;
    std::optional<double> real(const std::string& key) const;
    std::optional<int> integer(const std::string& key) const;
    std::optional<bool> boolean(const std::string& key) const;

    void setString(const std::string& key, const std::string& value);
    void setReal(const std::string& key, double value);
    void setInteger(const std::string& key, int value);
    void setBoolean(const std::string& key, bool value);
    void remove(const std::string& key);

    /// Emitted after a value changed, with its key.
    sigc::signal<void(const std::string&)>& signalChanged() { return m_changed; }

private:
    void written(const std::string& key);

    std::filesystem::path m_file;
    Glib::RefPtr<Glib::KeyFile> m_keys;
    sigc::signal<void(const std::string&)> m_changed;
};

}  // namespace corvel
