#include "platform/TextFinder.h"

#include <gtest/gtest.h>

#include <random>

namespace corvel {

TEST(TextFinder, FindsWhatThePlainSearchFinds) {
    std::mt19937 random(29);
    const auto someText = [&random](std::size_t length, std::size_t letters) {
        std::string text;
        for (std::size_t i = 0; i < length; ++i)
            text.push_back("abé\xFF"[random() % letters]);
        return text;
    };
    for (int round = 0; round < 20000; ++round) {
        const auto text = someText(random() % 300, 2 + random() % 3);
        const auto sought = someText(random() % (round % 10 == 0 ? 90 : 9), 2 + random() % 3);
        const std::size_t from = random() % (text.size() + 2);
        const TextFinder finder(sought);
        ASSERT_EQ(finder.findIn(text, from), std::string_view(text).find(sought, from))
            << text << " / " << sought << " from " << from;
    }
}

TEST(TextFinder, FindsTheLastBytesOfAText) {
    for (std::size_t length = 0; length < 200; ++length) {
        const auto text = std::string(length, 'x') + "zebra";
        EXPECT_EQ(TextFinder("zebra").findIn(text), length);
        EXPECT_EQ(TextFinder("zebras").findIn(text), std::string::npos);
    }
}

}  // namespace corvel
