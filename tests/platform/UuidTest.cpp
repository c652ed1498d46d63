#include "platform/Uuid.h"

#include <gtest/gtest.h>

namespace corvel {

TEST(Uuid, RoundTripsInEitherCaseAndRefusesTheRest) {
    const auto id = Uuid::parse("0a1B2c3d-4e5f-6071-8293-a4b5c6d7e8f9");
    ASSERT_TRUE(id);
    EXPECT_EQ(id->toString(), "0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9");
    EXPECT_EQ(Uuid::parse(id->toString()), id);
    for (const char* text :
         {"", "0a1B2c3d4e5f60718293a4b5c6d7e8f9", "{0a1B2c3d-4e5f-6071-8293-a4b5c6d7e8f9}",
          "0a1B2c3g-4e5f-6071-8293-a4b5c6d7e8f9", "0a1B2c3d-4e5f-6071-8293-a4b5c6d7e8f"}) {
        EXPECT_FALSE(Uuid::parse(text)) << text;
    }
}

TEST(Uuid, RandomOnesAreOfVersionFour) {
    const auto text = Uuid::random().toString();
    EXPECT_EQ(text[14], '4');
    EXPECT_NE(std::string("89AB").find(text[19]), std::string::npos);
    EXPECT_NE(Uuid::random(), Uuid::random());
}

}  // namespace corvel
