#pragma once

#include <giomm/applaunchcontext.h>

namespace corvel {

/// Gives texts of the toolkit (file dialogs, text menus) the interface's language instead of the
/// session's, from the next one made on. Without effect in a session that has no locale.
void setToolkitLanguage(const char* languageCode);

/// For programs that are started from here: they speak the session's language.
Glib::RefPtr<Gio::AppLaunchContext> sessionLaunchContext();

}  // namespace corvel
