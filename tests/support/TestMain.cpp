#include "platform/MainThread.h"
#include "support/TemporaryFolder.h"

#include <glibmm/init.h>
#include <gtest/gtest.h>

#include <cstdlib>

/// Every test program runs with XDG folders of its own, removed at its end.
int main(int argc, char** argv) {
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
