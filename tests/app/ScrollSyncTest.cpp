#include "app/ScrollSync.h"

#include <gtest/gtest.h>

#include <cmath>

namespace corvel {
namespace {

using namespace std::chrono_literals;

class ScrollSyncTest : public testing::Test {
protected:
    ScrollSyncTest() {
        scroll.signalScrolled().connect([this] { ++moves; });
        scroll.open(note);
        now += 1s;
    }

    std::chrono::steady_clock::time_point now;
    Uuid note = Uuid::random();
    ScrollSync scroll{[this] { return now; }};
    int moves = 0;
};

TEST_F(ScrollSyncTest, TakesNoEchoForAMoveOfTheOtherSide) {
    scroll.editorScrolled(0.5);
    EXPECT_EQ(scroll.scrollSource(), ScrollSource::editor);
    scroll.previewScrolled(0.53);
    EXPECT_EQ(moves, 1) << "the preview was moved and says so";
    EXPECT_EQ(scroll.scrollPercent(), 0.5);

    now += 10ms;
    scroll.editorScrolled(0.6);
    EXPECT_EQ(moves, 2) << "the side that moves goes on";
    now += ScrollSync::kEcho;
    scroll.previewScrolled(0.6004);
    EXPECT_EQ(moves, 2) << "a late echo is the same place";
    scroll.previewScrolled(0.2);
    EXPECT_EQ(moves, 3);
    EXPECT_EQ(scroll.scrollSource(), ScrollSource::preview);
}

TEST_F(ScrollSyncTest, OpensEachNoteWhereItWasLeft) {
    scroll.previewScrolled(0.7);
    scroll.open(Uuid::random());
    EXPECT_EQ(scroll.scrollPercent(), 0);
    EXPECT_EQ(scroll.scrollSource(), ScrollSource::none);
    scroll.editorScrolled(1);
    EXPECT_EQ(scroll.scrollPercent(), 0) << "the new note is still being laid out";
    scroll.open(note);
    EXPECT_EQ(scroll.scrollPercent(), 0.7);
}

TEST_F(ScrollSyncTest, KeepsToTheRange) {
    scroll.editorScrolled(1.5);
    EXPECT_EQ(scroll.scrollPercent(), 1);
    scroll.editorScrolled(std::nan(""));
    EXPECT_EQ(scroll.scrollPercent(), 1);
}

}  // namespace
}  // namespace corvel
