#include "ui/ToolkitLanguage.h"

#include <glib.h>

#include <optional>
#include <string>

// Raised, it makes gettext look for its catalogues anew: its manual's way to change the language
// of a running program.
extern "C" int _nl_msg_cat_cntr;  // NOLINT(bugprone-reserved-identifier): the C library's name

namespace corvel {

namespace {

constexpr const char* kVariable = "LANGUAGE";

const std::optional<std::string>& languageOfSession() {
    static const auto found = [] {
        const char* value = g_getenv(kVariable);
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    }();
    return found;
}

}  // namespace

void setToolkitLanguage(const char* languageCode) {
    languageOfSession();
    g_setenv(kVariable, languageCode, TRUE);
    ++_nl_msg_cat_cntr;
}

Glib::RefPtr<Gio::AppLaunchContext> sessionLaunchContext() {
    auto context = Gio::AppLaunchContext::create();
    if (const auto& language = languageOfSession()) {
        context->setenv(kVariable, *language);
    } else {
        context->unsetenv(kVariable);
    }
    return context;
}

}  // namespace corvel
