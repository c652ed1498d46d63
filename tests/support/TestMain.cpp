#include "app/HelperRoles.h"
#include "platform/MainThread.h"
#include "support/TemporaryFolder.h"

#include <glibmm/init.h>
#include <gtest/gtest.h>

#include <cstdlib>

/// A test program is its own helper, as the program is. Every one runs with XDG folders of its own,
/// removed at its end.
int main(int argc, char** argv) {
    if (const auto status = corvel::runAsHelper(argc, argv)) return *status;
    const corvel::TemporaryFolder home;
    for (const char* name :
         {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "HOME"}) {
        setenv(name, (home.path() / name).c_str(), 1);
    }
    Glib::init();
    corvel::claimMainThread();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
