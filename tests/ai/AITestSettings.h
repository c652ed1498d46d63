#pragma once

#include "app/settings/Localisation.h"
#include "app/settings/Preferences.h"
#include "support/TemporaryFolder.h"

namespace corvel {

/// Preferences of a test's own, with English texts.
struct AITestSettings {
    AITestSettings() { preferences.setAppLanguage("en"); }

    TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "preferences.ini"};
    Preferences preferences{defaults};
    Localisation texts{preferences};
};

}  // namespace corvel
