#include "export/ExportError.h"
#include "export/pdf/PdfTask.h"
#include "platform/HelperProcess.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace corvel {
namespace {

PdfTask task() {
    return {{251},
            "[{\"href\":\"#\xC5\xBC\"}]",
            {595, 842, 56.7},
            "Say &quot;hi&quot;",
            {"Say \"hi\"\nżółw", "pl", Color{0.1, 0.25, 1}},
            {"/9j/", "AAAA"}};
}

TEST(PdfTask, ComesWholeToTheHelper) {
    const PdfTask sent = task();
    const PdfTask came = pdfTaskFrom(textOf(sent));
    EXPECT_EQ(came.colors.red, 251);
    EXPECT_EQ(marksFrom(came.marks).at(0).href, "#ż");
    EXPECT_EQ(came.paper.margin, sent.paper.margin);
    EXPECT_EQ(came.header, sent.header);
    EXPECT_EQ(came.description.title, sent.description.title);
    EXPECT_EQ(came.description.language, "pl");
    EXPECT_EQ(came.description.paper, sent.description.paper);
    EXPECT_EQ(came.photos, sent.photos);
    EXPECT_THROW(pdfTaskFrom("{}\n[]"), ExportError);
    EXPECT_THROW(pdfTaskFrom(""), ExportError);
}

TEST(PdfTask, AFileThatIsNoPdfIsToldInWords) {
    const TemporaryFolder folder;
    const auto file = folder.write("page.pdf", "not printed at all");
    std::optional<HelperOutcome> outcome;
    HelperProcess({kThisProgram, kPdfFinisherOption, file})
        .work(textOf(task()), {}, [&](HelperOutcome answer) { outcome = std::move(answer); });
    ASSERT_TRUE(turnUntil([&] { return outcome.has_value(); }));
    EXPECT_FALSE(outcome->isGood);
    EXPECT_NE(outcome->output.find("page.pdf"), std::string::npos) << outcome->output;
}

TEST(MarkColors, AreNoneThatThePageNames) {
    EXPECT_EQ(MarkColors::unusedIn("<p>#fd is 253</p> rgb").red, 252);
    EXPECT_EQ(MarkColors::unusedIn("#fff rgb(253,0,0) RGBA( 252 , 1, 1) #FB0000").red, 250);
    EXPECT_EQ(MarkColors::unusedIn("argh(253) (253) #").red, 253);
}

TEST(PdfPhotos, AreFoundInThePageOnceEach) {
    EXPECT_THAT(
        photosIn("<img src=\"data:image/jpeg;base64,QQ==\"><img src='data:image/png;base64,Qg'>"
                 "<p style=\"background: url(data:image/jpg;base64,Qw==)\">"
                 "<img src=\"data:image/jpeg;base64,QQ==\"> data:image/jpeg;base64,"),
        testing::ElementsAre("", "QQ==", "Qw=="));
    EXPECT_TRUE(photosIn("data:image/jp").empty());
}

}  // namespace
}  // namespace corvel
