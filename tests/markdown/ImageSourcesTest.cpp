#include "markdown/ImagePasses.h"
#include "markdown/MarkdownParserService.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

namespace corvel {
namespace {

namespace fs = std::filesystem;

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

constexpr const char* kGif = "GIF89a;";
constexpr const char* kGifUrl = "data:image/gif;base64,R0lGODlhOw==";

class ImagesBeside : public testing::Test {
protected:
    std::string shown(const std::string& address) const {
        const std::string html = parser.postProcessImages("<img src=\"" + address + "\">", notes);
        return html.substr(10, html.size() - 12);
    }

    TemporaryFolder folder;
    fs::path notes = folder.write("a \"b'/ż/note.md", "").parent_path();
    MarkdownParserService parser;
};

TEST_F(ImagesBeside, AreThoseInTheFolderOfTheFileAndBelow) {
    folder.write("a \"b'/ż/pic ture.png", kGif);
    folder.write("a \"b'/ż/deep/a:b.gif", kGif);
    folder.write("a \"b'/ż/100%25.gif", kGif);
    for (const char* address : {"pic ture.png", "pic%20ture.png", "./deep/../pic%20ture.png",
                                "deep/a:b.gif", "100%2525.gif", "pic%20ture.png?raw=true#top"}) {
        EXPECT_EQ(shown(address), kGifUrl) << address << ": its type is that of its bytes";
    }
    EXPECT_EQ(parser.postProcessImages("<IMG src='deep/a:b.gif'>", notes),
              "<IMG src='" + std::string(kGifUrl) + "'>");
    const std::string html = "<img src=\"pic%20ture.png\">";
    EXPECT_EQ(parser.postProcessImages(html), html) << "a note without a file";
}

TEST_F(ImagesBeside, AreNeverTakenFromElsewhere) {
    folder.write("a \"b'/outside.gif", kGif);
    folder.write("a \"b'/żz/outside.gif", kGif);
    folder.write("a \"b'/ż/note.gif", "# no image");
    fs::create_symlink("../outside.gif", notes / "link.gif");
    fs::create_directory_symlink("..", notes / "up");
    fs::create_symlink("/dev/zero", notes / "zero.gif");
    ASSERT_EQ(::mkfifo((notes / "pipe.gif").c_str(), 0666), 0);
    for (const char* address :
         {"../outside.gif", "%2e%2e/outside.gif", "..%2Foutside.gif", "../żz/outside.gif",
          "link.gif", "up/outside.gif", "note.gif", "zero.gif", "pipe.gif", ".", "gone.gif",
          "http://a/b.gif", "data:image/png,", "attachment://x", "file:note.gif", "", "#a"}) {
        EXPECT_EQ(shown(address), address);
    }
    // The folder itself may be a link.
    folder.write("a \"b'/ż/in.gif", kGif);
    fs::create_directory_symlink(notes, folder.path() / "way");
    EXPECT_NE(parser.postProcessImages("<img src=\"in.gif\">", folder.path() / "way").find("data:"),
              std::string::npos);
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
