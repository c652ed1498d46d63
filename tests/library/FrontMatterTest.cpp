#include "library/AttachmentLinks.h"
#include "library/FrontMatter.h"
#include "library/IsoDate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>

namespace corvel {
namespace {

using testing::ElementsAre;

FrontMatter readBack(const FrontMatter& written) {
    const auto text = written.block() + "text";
    const auto found = frontMatterOf(text);
    EXPECT_TRUE(found && found->isOurs) << text;
    EXPECT_EQ(text.substr(found ? found->textBegin : 0), "text");
    return found ? found->values : FrontMatter{};
}

TEST(FrontMatter, KeepsTextsThatYamlWouldTakeForSomethingElse) {
    for (const char* title :
         {"", "yes", "null", "1.10", "a: b # c", "\"quoted\" \\ 'x'", "two\nlines\r\n---\n",
          "\t\x01\x7F", "Zażółć \xE2\x80\xA8 \xF0\x9F\x8E\x89", "- list", "*alias", "&a", "%", "@",
          "2026-01-01"}) {
        FrontMatter matter;
        matter.title = title;
        matter.tags = {title, "b"};
        matter.folders = {{title}};
        const auto back = readBack(matter);
        EXPECT_STREQ(back.title.value_or("none").c_str(), title);
        EXPECT_THAT(back.tags, ElementsAre(title, "b"));
        EXPECT_EQ(back.folders, matter.folders);
    }
}

TEST(FrontMatter, KeepsDatesToTheMicrosecond) {
    for (const std::int64_t moment : {0L, 1L, -1L, 1'779'005'400'000'250L, -62'135'596'800'000'000L,
                                      253'402'300'799'999'999L, 1'700'000'000'999'999L}) {
        const auto text = isoDate({moment});
        ASSERT_TRUE(text);
        EXPECT_EQ(dateFromIso(*text), Date{moment}) << *text;
    }
    EXPECT_FALSE(isoDate({253'402'300'800'000'000}));
    EXPECT_EQ(dateFromIso("2026-05-17T08:30:00+02:00"), dateFromIso("2026-05-17T06:30:00.0000009"));
    for (const char* text :
         {"", "today", "2026-13-01T00:00:00Z", "2026-01-01", "2026-01-01T00:00.5"})
        EXPECT_FALSE(dateFromIso(text)) << text;
}

TEST(FrontMatter, LeavesABlockOfSomebodyElseInTheText) {
    const auto found = frontMatterOf("---\ntitle: Trip\nid: x\ntags: [a]\n---\nText");
    ASSERT_TRUE(found);
    EXPECT_FALSE(found->isOurs);
    EXPECT_EQ(found->textBegin, 0U);
    EXPECT_EQ(found->values.title, "Trip");
    EXPECT_TRUE(found->values.tags.empty());
}

TEST(FrontMatter, KeepsABlockInTheTextThatWasAddedTo) {
    const auto found =
        frontMatterOf("---\r\ncorvel: 1\r\npinned: true\r\nmood: good\r\n---\r\nText");
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->isOurs);
    EXPECT_TRUE(found->values.isPinned);
    EXPECT_EQ(found->textBegin, 0U);
}

TEST(FrontMatter, IsNotFoundInTextsThatOnlyLookLikeIt) {
    std::string deep = "---\ncorvel: 1\ntags: ";
    deep.append(100'000, '[').append("\n---\n");
    for (const std::string& text :
         std::vector{std::string("---\nA rule, then text"), std::string("----\na: b\n---\n"),
                     std::string("--- a\nb: c\n---\n"), std::string("---\n- list\n---\n"),
                     std::string("---\na: [b\n---\n"), std::string("---\n*a\n---\n"), deep,
                     std::string("---"), std::string()})
        EXPECT_FALSE(frontMatterOf(text)) << text.substr(0, 40);
}

TEST(FrontMatter, ReadsWhatIsMadeToHurtInNoTime) {
    const auto repeated = [](std::string head, const std::string& piece, const std::string& tail) {
        while (head.size() < 1'000'000)
            head += piece;
        return "---\ncorvel: 1\n" + head + tail + "\n---\n";
    };
    std::string bomb = "a: &a0 [x, x]\n";
    for (int i = 1; i < 40; ++i) {
        const auto number = [](int n) { return std::to_string(n); };
        bomb += "b" + number(i) + ": &a" + number(i);
        bomb += " [*a" + number(i - 1) + ", *a" + number(i - 1) + "]\n";
    }
    for (const auto& text :
         {repeated("tags: [", "a, ", "]"), repeated("", "title: x\n", ""),
          repeated("tags: ", "- ", "x"), repeated("tags: ", "{a: ", ""), repeated("", "? ", ""),
          repeated("tags: ", "!t ", "x"), repeated("tags: \"", "\\u0000", "\""),
          repeated("title: ", "x\n ", ""), repeated("tags: [", "&a x, *a, ", "]"),
          repeated("tags: &a [", "*a, ", "]"), repeated("", "#\n", "pinned: true"),
          "---\ncorvel: 1\n" + bomb + "tags: *a39\n---\n"}) {
        const auto start = std::clock();
        frontMatterOf(text);
        EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC) << text.substr(0, 60);
    }
}

TEST(FrontMatter, TakesValuesOfAWrongKindForAbsent) {
    const auto found = frontMatterOf(
        "---\ncorvel: 1\nid: 5\ntitle: [x]\ncreated: soon\npinned: 1\ntags: {a: b}\nfolders: x\n"
        "attachments: [1, {file: a}, {id: y, file: b}, {file: c, id: "
        "0F8FAD5B-D9CB-469F-A165-70867728950E}]\n---\n");
    ASSERT_TRUE(found && found->isOurs);
    const auto& values = found->values;
    EXPECT_FALSE(values.id || values.title || values.createdAt || values.isPinned);
    EXPECT_TRUE(values.tags.empty());
    ASSERT_EQ(values.attachments.size(), 1U);
    EXPECT_EQ(values.attachments[0].path, "c");
}

TEST(AttachmentLinks, ComeBackAsTheyWere) {
    const Uuid one = Uuid::random();
    const Uuid two = Uuid::random();
    const std::string path = "_attachments/zdjęcie 1 (a).png";
    const auto address = fileAddress(path);
    EXPECT_EQ(address.find_first_of(" ()"), address.npos);
    const std::string text = "![](" + attachmentAddress(one) + ") `" + attachmentAddress(one) +
                             "` [x](" + attachmentAddress(two) + ") " + attachmentAddress(one) +
                             "0 attachment://" + one.toString().substr(1);
    EXPECT_THAT(attachmentsNamedIn(text), ElementsAre(one, two));
    const auto linked = withFileAddresses(text, {{one, address}});
    EXPECT_NE(linked.find("![](" + address + ")"), linked.npos);
    EXPECT_NE(linked.find(attachmentAddress(two)), linked.npos);
    EXPECT_NE(linked.find(attachmentAddress(one) + "0"), linked.npos);
    EXPECT_EQ(withAttachmentAddresses(linked, {{address, one}}), text);
}

}  // namespace
}  // namespace corvel
