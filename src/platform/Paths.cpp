#include "platform/Paths.h"

#include <glibmm/miscutils.h>

namespace corvel::paths {

std::filesystem::path applicationSupport() {
    return std::filesystem::path(Glib::get_user_data_dir()) / "qno Corvel";
}

std::filesystem::path themes() {
    return applicationSupport() / "Themes";
}

std::filesystem::path preferencesFile() {
    return std::filesystem::path(Glib::get_user_config_dir()) / "qno-corvel" / "preferences.ini";
}

std::filesystem::path messages() {
    return std::filesystem::path(Glib::get_user_cache_dir()) / "qno-corvel" / "messages";
}

}  // namespace corvel::paths
