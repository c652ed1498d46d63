#include "markdown/MarkdownParserService.h"
#include "markdown/MarkdownPlainTextRenderer.h"
#include "support/FileContent.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace corvel {
namespace {

namespace fs = std::filesystem;

// Each folder of cases/body/ holds in.md and the body.html it must give. With CORVEL_RECORD_CASES
// set the files are written anew, to be reviewed as a change.
TEST(Cases, RenderAsRecorded) {
    const bool records = std::getenv("CORVEL_RECORD_CASES") != nullptr;
    int count = 0;
    for (const auto& folder :
         fs::directory_iterator(fs::path(CORVEL_TEST_DATA) / "markdown/cases/body")) {
        const fs::path expected = folder.path() / "body.html";
        const std::string body =
            MarkdownParserService::renderBody(contentOf(folder.path() / "in.md"));
        if (records) std::ofstream(expected, std::ios::binary) << body;
        ASSERT_TRUE(fs::exists(expected)) << expected;
        EXPECT_EQ(body, contentOf(expected)) << folder.path();
        ++count;
    }
    EXPECT_GE(count, 8);
}

// The same for text.txt in the folders of cases/body/ and cases/text/.
TEST(Cases, GiveThePlainTextAsRecorded) {
    using Links = MarkdownPlainTextRenderer::Links;
    const bool records = std::getenv("CORVEL_RECORD_CASES") != nullptr;
    int count = 0;
    for (const char* group : {"body", "text"}) {
        for (const auto& folder :
             fs::directory_iterator(fs::path(CORVEL_TEST_DATA) / "markdown/cases" / group)) {
            const fs::path expected = folder.path() / "text.txt";
            MarkdownPlainTextRenderer renderer(Links::withAddress);
            const std::string text = renderer.render(contentOf(folder.path() / "in.md"));
            if (records) std::ofstream(expected, std::ios::binary) << text;
            ASSERT_TRUE(fs::exists(expected)) << expected;
            EXPECT_EQ(text, contentOf(expected)) << folder.path();
            ++count;
        }
    }
    EXPECT_GE(count, 13);
}

}  // namespace
}  // namespace corvel
