#include "markdown/MarkdownParserService.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace corvel {
namespace {

TEST(Guide, LeadsToHeadingsThatAreThere) {
    for (const std::string language : {"pl", "en"}) {
        std::ifstream file(CORVEL_SOURCE_DIR "/src/ui/resources/guide/markdown." + language +
                           ".md");
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        const std::string page = MarkdownParserService::renderBody(text);
        const std::string link = "<a href=\"#";
        int links = 0;
        for (auto at = page.find(link); at != std::string::npos; at = page.find(link, at + 1)) {
            const auto begin = at + link.size();
            const std::string target = page.substr(begin, page.find('"', begin) - begin);
            EXPECT_NE(page.find(" id=\"" + target + "\""), std::string::npos) << target;
            ++links;
        }
        EXPECT_GT(links, 10) << language;
    }
}

}  // namespace
}  // namespace corvel
