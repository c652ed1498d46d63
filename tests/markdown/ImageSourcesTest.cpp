#include "markdown/ImagePasses.h"
#include "markdown/MarkdownParserService.h"

#include <gtest/gtest.h>

#include <string>

namespace corvel {
namespace {

std::string marked(const std::string& html) {
    return MarkdownParserService::markRemoteImages(html);
}

TEST(ImageSources, FromTheWebAreMarkedHoweverTheyAreWritten) {
    EXPECT_EQ(marked("<p><img src=\"https://a.org/b.png\" alt=\"\"></p>"),
              "<p><img src=\"corvel-image:https://a.org/b.png\" alt=\"\"></p>");
    EXPECT_EQ(marked("<IMG alt='a>b' SRC = 'HTTP://a/'>"),
              "<IMG alt='a>b' SRC = 'corvel-image:HTTP://a/'>");
    EXPECT_EQ(marked("<img/src=http://a/b><img\nsrc=\"http://c\">"),
              "<img/src=corvel-image:http://a/b><img\nsrc=\"corvel-image:http://c\">");
}

TEST(ImageSources, OfOtherKindsStay) {
    for (const std::string html :
         {"<img src=\"data:image/png;base64,AA==\">", "<img src=\"/a/b.png\">", "<img>",
          "<img src>", "<imgs src=\"http://a\">", "<a href=\"http://a\"><img alt=\"http://a\"></a>",
          "<img src=\"", "<p>&lt;img src=\"http://a\"&gt;</p>", "<img data-src=\"http://a\">",
          "<img ", "<img"}) {
        EXPECT_EQ(marked(html), html);
    }
}

TEST(ImageSources, OfAFileStartAtItsFolder) {
    const auto resolved = [](const std::string& html) {
        return MarkdownParserService::resolveImages(html, "/home/a \"b'/ż");
    };
    EXPECT_EQ(resolved("<img src=\"../pic ture.png\">"),
              "<img src=\"/home/a%20%22b%27/ż/../pic ture.png\">");
    for (const std::string html : {"<img src=\"/x.png\">", "<img src=\"http://a/b.png\">",
                                   "<img src=\"data:image/png,\">", "<img src=\"\">"}) {
        EXPECT_EQ(resolved(html), html);
    }
    EXPECT_EQ(imagepasses::resolveRelativeSources("<img src=a/b:c.png>", "/f/"),
              "<img src=/f/a/b:c.png>");
}

TEST(ImageSources, AreFoundInLinearTimeInTextMadeToBeSlow) {
    for (const std::string piece :
         {"<img ", "<img a=", "<img src='", "<img \"", "<", "<img a=\" "}) {
        std::string html;
        while (html.size() < 3'000'000)
            html += piece;
        EXPECT_EQ(marked(html).size(), html.size()) << "ends, which a quadratic scan would not";
    }
}

}  // namespace
}  // namespace corvel
