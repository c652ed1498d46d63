#include "markdown/PreviewPage.h"
#include "support/FileContent.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

TEST(PreviewPage, IsTheRecordedTemplateWithTheStylesheetAndTheBody) {
    const std::string recorded = contentOf(CORVEL_TEST_DATA "/markdown/cases/preview/page.html");
    ASSERT_FALSE(recorded.empty());
    EXPECT_EQ(PreviewPage::html("CSS", "BODY"), recorded);
    EXPECT_EQ(PreviewPage::scriptHash(), "sha256-PpTn5sgoJZ9vPATrCgnMc19Mq00VzsGudi4rBBoyntg=");
}

TEST(PreviewPage, KeepsAHostileStylesheetInItsElement) {
    const std::string hostile("a{}</StYlE ><script>x</script></style\0</st\0yle>b", 48);
    const std::string page = PreviewPage::html(hostile, {});
    EXPECT_NE(
        page.find("<style>a{}<\\/StYlE ><script>x</script><\\/style\uFFFD</st\uFFFDyle>b</style>"),
        std::string::npos)
        << page;
    EXPECT_NE(PreviewPage::html("a</styl", {}).find("<style>a</styl</style>"), std::string::npos);
}

TEST(PreviewPage, EscapesWhatATemplateLiteralWouldInterpret) {
    EXPECT_EQ(PreviewPage::updateScript("a`b\\c${d}$e$"), "updateContent(`a\\`b\\\\c\\${d}$e$`);");
    EXPECT_EQ(PreviewPage::updateScript("\\${"), "updateContent(`\\\\\\${`);");
}

TEST(PreviewPage, CannotBeMadeToRunAFragment) {
    EXPECT_EQ(PreviewPage::jumpScript("it's"),
              "document.getElementById('it\\'s')?.scrollIntoView({behavior:'smooth'});");
    EXPECT_EQ(PreviewPage::jumpScript("\\');alert(1)//\n"),
              "document.getElementById('\\\\\\');alert(1)//\\n')"
              "?.scrollIntoView({behavior:'smooth'});");
}

}  // namespace
}  // namespace corvel
