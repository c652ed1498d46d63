#include "platform/UserDefaults.h"

#include "platform/Handle.h"

#include <glibmm/error.h>
#include <glibmm/fileutils.h>

#include <charconv>
#include <utility>

namespace corvel {

namespace {

constexpr const char* kGroup = "Preferences";

template <typename Number>
std::optional<Number> parseNumber(const std::optional<std::string>& text) {
    if (!text) return std::nullopt;
    Number value{};
    const char* end = text->data() + text->size();
    const auto [stopped, error] = std::from_chars(text->data(), end, value);
    if (error != std::errc{} || stopped != end) return std::nullopt;
    return value;
}

}  // namespace

UserDefaults::UserDefaults(std::filesystem::path file)
    : m_file(std::move(file)), m_keys(Glib::KeyFile::create()) {
    try {
        m_keys->load_from_file(m_file.string(), Glib::KeyFile::Flags::KEEP_COMMENTS);
    } catch (const Glib::Error&) {
        m_keys = Glib::KeyFile::create();  // none yet, or unreadable: every key has its default
    }
}

// Asked for at every text that is shown: an absent key must not cost an exception.
std::optional<std::string> UserDefaults::string(const std::string& key) const {
    const Handle<char, g_free> value(
        g_key_file_get_string(m_keys->gobj(), kGroup, key.c_str(), nullptr));
    if (!value) return std::nullopt;
    return std::string(value.get());
}

std::optional<double> UserDefaults::real(const std::string& key) const {
    return parseNumber<double>(string(key));
}

std::optional<int> UserDefaults::integer(const std::string& key) const {
    return parseNumber<int>(string(key));
}

std::optional<bool> UserDefaults::boolean(const std::string& key) const {
    const auto text = string(key);
    if (text == "true") return true;
    if (text == "false") return false;
    return std::nullopt;
}

void UserDefaults::setString(const std::string& key, const std::string& value) {
    if (string(key) == value) return;
    m_keys->set_string(kGroup, key, value);
    written(key);
}

void UserDefaults::setReal(const std::string& key, double value) {
    char buffer[32];
    const auto [end, error] = std::to_chars(std::begin(buffer), std::end(buffer), value);
    if (error == std::errc{}) setString(key, {buffer, end});
}

void UserDefaults::setInteger(const std::string& key, int value) {
    setString(key, std::to_string(value));
}

void UserDefaults::setBoolean(const std::string& key, bool value) {
    setString(key, value ? "true" : "false");
}

void UserDefaults::remove(const std::string& key) {
    if (!string(key)) return;
    m_keys->remove_key(kGroup, key);
    written(key);
}

void UserDefaults::written(const std::string& key) {
    std::error_code ignored;
    std::filesystem::create_directories(m_file.parent_path(), ignored);
    try {
        Glib::file_set_contents(m_file.string(), m_keys->to_data().raw());
    } catch (const Glib::Error&) {  // NOLINT(bugprone-empty-catch): holds for this run
    }
    m_changed.emit(key);
}

}  // namespace corvel
