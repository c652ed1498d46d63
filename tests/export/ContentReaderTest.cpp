#include "export/pdf/ContentReader.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

// Red 253 of 255, the mark's number as green and blue.
constexpr const char* kMarkTwo = ".9922 0 .0078 rg ";

std::string filtered(ContentReader& reader, const std::string& content) {
    return reader.filter(content);
}

TEST(ContentReader, TakesOutAMarksRectanglesAndTellsWhereTheyWere) {
    ContentReader reader({253}, 10, {});
    const std::string output = filtered(
        reader, std::string("1 0 0 -1 0 100 cm q .5 0 0 .5 10 20 cm ") + kMarkTwo +
                    "4 8 20 10 re\nf Q BT <0037> Tj (a \\) f) Tj ET 0 0 0 rg 1 1 5 5 re f");
    EXPECT_EQ(output, std::string("1 0 0 -1 0 100 cm q .5 0 0 .5 10 20 cm ") +
                          ".9922 0 .0078 rg Q BT <0037> Tj (a \\) f) Tj ET 0 0 0 rg 1 1 5 5 re f");
    ASSERT_EQ(reader.shapes().size(), 1U);
    const auto& shape = reader.shapes().front();
    EXPECT_EQ(shape.mark, 2);
    EXPECT_DOUBLE_EQ(shape.area.llx, 12);
    EXPECT_DOUBLE_EQ(shape.area.urx, 22);
    EXPECT_DOUBLE_EQ(shape.area.lly, 71);
    EXPECT_DOUBLE_EQ(shape.area.ury, 76);
}

TEST(ContentReader, LeavesEverythingElseByteForByte) {
    for (const char* content :
         {".9922 0 .0078 rg 0 0 9 9 re W n", ".9922 0 .0078 rg 0 0 9 9 re S",
          ".9922 0 .0471 rg 0 0 9 9 re f", ".99 0 0 rg 0 0 9 9 re f",
          "q .9922 0 .0078 rg Q 0 0 9 9 re f", ".9922 0 .0078 rg 0.5 g 0 0 9 9 re f",
          "[(x) -20 (y)] TJ /F1 12 Tf % 0 0 9 9 re f\n", "BI /W 1 ID \x01 f EI 0 0 9 9 re f", "(",
          "<", "<</A 1>> BDC EMC", "re f Q Q cm", ""}) {
        ContentReader reader({253}, 10, {});
        EXPECT_EQ(filtered(reader, content), content);
        EXPECT_TRUE(reader.shapes().empty()) << content;
    }
}

TEST(ContentReader, TellsOfFormsAndCurvedShapes) {
    ContentReader reader({253}, 10, {});
    EXPECT_EQ(filtered(reader, std::string("2 0 0 2 0 0 cm /X1 Do ") + kMarkTwo +
                                   "1 1 m 5 1 l 5 9 6 9 5 7 c h f*"),
              "2 0 0 2 0 0 cm /X1 Do .9922 0 .0078 rg");
    ASSERT_EQ(reader.forms().size(), 1U);
    EXPECT_EQ(reader.forms().front().name, "/X1");
    ASSERT_EQ(reader.shapes().size(), 1U);
    EXPECT_DOUBLE_EQ(reader.shapes().front().area.urx, 12);
}

}  // namespace
}  // namespace corvel
