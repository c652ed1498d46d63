#include "app/SyncState.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

TEST(SyncState, SaysWhyNothingIsMirrored) {
    EXPECT_STREQ(explanationOf(syncState(false, true)).english,
                 "iCloud sync is disabled in this configuration.");
    EXPECT_STREQ(explanationOf(syncState(true, false)).english,
                 "Sign in to iCloud in System Settings to enable sync across your devices.");
    EXPECT_STREQ(explanationOf(syncState(true, true)).english,
                 "Your notes sync automatically across all your devices via iCloud.");
}

}  // namespace
}  // namespace corvel
