#include "markdown/MarkdownParserService.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace corvel {
namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

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

}  // namespace
}  // namespace corvel
