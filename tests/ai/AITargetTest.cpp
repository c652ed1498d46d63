#include "ai/AITarget.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

// The user goes on writing while the reply comes: of equal words the nearest are those selected.
TEST(AITarget, FindsItsSelectionWhereItHasMovedTo) {
    const AITarget target(AIContext{{}, "", "a cat, a dog, a cat", "cat", 16});
    EXPECT_EQ(target.placeOfSelection("a cat, a dog, a cat"), 16U);
    EXPECT_EQ(target.placeOfSelection("a cat, a dog, one more cat"), 23U);
    EXPECT_EQ(target.placeOfSelection("a cat, dog, a cat, then the other cat"), 14U);
    EXPECT_EQ(target.placeOfSelection("cat"), 0U);
    EXPECT_EQ(target.placeOfSelection("a dog"), std::nullopt);
    EXPECT_EQ(target.placeOfSelection(""), std::nullopt);
}

TEST(AITarget, KnowsWhetherTheNoteIsAsItWas) {
    const AITarget target({}, "", "text");
    EXPECT_TRUE(target.isContent("text"));
    EXPECT_FALSE(target.isContent("Text"));
    EXPECT_FALSE(target.isContent("text "));
}

}  // namespace
}  // namespace corvel
