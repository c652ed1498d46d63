#include "markdown/LocalImage.h"
#include "markdown/MarkdownParserService.h"
#include "platform/Paths.h"
#include "support/TemporaryFolder.h"

#include <glib.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <stdexcept>

namespace corvel {
namespace {

constexpr const char* kId = "0C5F2A3E-1111-4222-8333-1234567890AB";

std::string image(const std::string& source, const std::string& rest = "") {
    return "<p><img src=\"" + source + "\" alt=\"a\">" + rest + "</p>";
}

TEST(Slug, IsLowerCaseWithoutMarksAndPunctuation) {
    EXPECT_EQ(MarkdownParserService::headingSlug("Hello, World!"), "hello-world");
    EXPECT_EQ(MarkdownParserService::headingSlug("Zażółć  GĘŚLĄ – 2"), "zazołc-gesla-2");
    EXPECT_EQ(MarkdownParserService::headingSlug("--a & b--"), "a-b");
    EXPECT_EQ(MarkdownParserService::headingSlug("!?"), "");
}

TEST(Images, AttachmentsThatExistAreEmbedded) {
    const MarkdownParserService service(
        [](const Uuid& id) -> std::optional<MarkdownParserService::AttachmentData> {
            if (id != Uuid::parse(kId)) return std::nullopt;
            return MarkdownParserService::AttachmentData{"image/gif", {'a', 'b', 'c', 'd'}};
        });
    const std::string known = std::string("attachment://") + kId;
    const std::string absent = image("attachment://00000000-1111-4222-8333-1234567890AB");
    const std::string noUuid = image("attachment://------------------------------------");
    EXPECT_EQ(service.postProcessImages(image(known, "{width=50%}")),
              "<p><img src=\"data:image/gif;base64,YWJjZA==\" alt=\"a\" style=\"width:50%;\"></p>");
    EXPECT_EQ(service.postProcessImages(absent + noUuid), absent + noUuid);
    EXPECT_EQ(MarkdownParserService().postProcessImages(image(known)), image(known));
}

TEST(Images, LocalFilesAreEmbeddedByTheirType) {
    const TemporaryFolder folder;
    std::string bytes;
    for (int i = 0; i < 1000; ++i)
        bytes += static_cast<char>(i * 7);
    for (const auto& [name, mime] : {std::pair{"a b.JPG", "image/jpeg"},
                                     {"c.svg", "image/svg+xml"},
                                     {"d", "image/png"},
                                     {"ż.heic", "image/heic"},
                                     {"e.tif", "image/tiff"}}) {
        const std::string path = folder.write(name, bytes).string();
        std::string source = path;
        if (const auto space = source.find(' '); space != std::string::npos)
            source.replace(space, 1, "%20");
        gchar* base64 =
            g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size());
        EXPECT_EQ(MarkdownParserService().postProcessImages(image(source)),
                  image(std::string("data:") + mime + ";base64," + base64));
        g_free(base64);
    }
}

TEST(Images, WhatIsNoPlainFileIsLeftAlone) {
    const TemporaryFolder folder;
    const std::filesystem::path pipe = folder.path() / "pipe.png";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::filesystem::create_directories(paths::applicationSupport());
    std::ofstream(paths::applicationSupport() / "store.png") << "secret";
    const auto link = folder.path() / "link.png";
    std::filesystem::create_symlink(paths::applicationSupport() / "store.png", link);
    const auto huge = folder.write("huge.png", "");
    std::filesystem::resize_file(huge, (64U << 20U) + 1U);
    for (const std::string& path :
         {pipe.string(), folder.path().string(), std::string("/dev/null"),
          std::string("/proc/self/status"), std::string("/nowhere/a.png"),
          (paths::applicationSupport() / "store.png").string(), link.string(), huge.string(),
          std::string("/%00"), std::string("/%zz")}) {
        EXPECT_EQ(MarkdownParserService().postProcessImages(image(path)), image(path));
    }
}

TEST(Images, PercentSignsAreDecodedOnlyWhenAllAreGood) {
    EXPECT_EQ(percentDecoded("/a%20%C5%BC"), "/a ż");
    EXPECT_EQ(percentDecoded("/a%20%zz"), "/a%20%zz");
    EXPECT_EQ(percentDecoded("/a%2"), "/a%2");
    EXPECT_EQ(percentDecoded("/%FF"), "/%FF");
}

TEST(FullPage, HoldsTitleStyleAndBody) {
    const std::string page = MarkdownParserService::fullPage("a < \"b\"", "p{}", "<p>x</p>\n");
    EXPECT_TRUE(page.starts_with(
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n    <meta charset=\"utf-8\">\n    <meta "
        "name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n    <title>a &lt; "
        "&quot;b&quot;</title>\n    <style>p{}</style>\n    <style>\n        body { max-width: "
        "800px;"));
    EXPECT_NE(page.find("</style>\n</head>\n<body>\n<p>x</p>\n\n    <script>\n        "
                        "document.addEventListener('click', function(e) {\n"),
              std::string::npos);
    EXPECT_TRUE(page.ends_with("            }\n        });\n    </script>\n</body>\n</html>"));
}

TEST(EmailPage, WritesItsNumbersAndFonts) {
    const auto page =
        MarkdownParserService::emailPage("t&", "<p>x</p>", {"Inter", "Mono", 15.9, 1.6});
    EXPECT_TRUE(
        page.starts_with("<!DOCTYPE html>\n<html>\n<head>\n    <meta charset=\"utf-8\">\n"));
    EXPECT_TRUE(page.ends_with(
        "<title>t&amp;</title>\n</head>\n<body "
        "style=\"margin:0;padding:0;background-color:#f5f5f5;font-family:'Inter', -apple-system, "
        "BlinkMacSystemFont, 'Segoe UI', Helvetica, Arial, "
        "sans-serif;font-size:15px;line-height:1.6;color:#1A1A1A;\">\n    <div "
        "style=\"max-width:680px;margin:0 auto;padding:32px 24px;background-color:#ffffff;\">\n    "
        "    <p style=\"margin:1em 0\">x</p>\n    </div>\n</body>\n</html>"));
    EXPECT_NE(MarkdownParserService::emailPage("", "", {"", "", 15, 2}).find("line-height:2.0;"),
              std::string::npos);
    EXPECT_NE(MarkdownParserService::emailPage("", "", {"", "", 15, 100000})
                  .find("line-height:100000.0;"),
              std::string::npos);
    EXPECT_THROW(MarkdownParserService::emailPage(
                     "", "", {"", "", std::numeric_limits<double>::infinity(), 1}),
                 std::invalid_argument);
}

TEST(EmailPage, StylesElementsInPlace) {
    const auto styled = [](const std::string& body) {
        const auto page = MarkdownParserService::emailPage("", body, {"B", "C", 15, 1.6});
        const auto begin = page.find("        ", page.find("<div")) + 8;
        return page.substr(begin, page.rfind("\n    </div>") - begin);
    };
    EXPECT_EQ(
        styled("<pre><code class=\"language-c\">x</code></pre>"),
        "<pre "
        "style=\"background-color:#F0F0F0;padding:16px;border-radius:8px;overflow-x:auto;margin:"
        "1em 0\"><code style=\"background:none;padding:0;color:#1A1A1A;font-size:0.9em\" "
        "class=\"language-c\">x</code></pre>");
    EXPECT_EQ(styled("<code>x</code>"),
              "<code style=\"font-family:'C', 'SF Mono', Menlo, Consolas, "
              "monospace;background-color:#F0F0F0;color:#D63384;padding:2px "
              "6px;border-radius:4px;font-size:0.9em\">x</code>");
    EXPECT_EQ(styled("<img src=\"a\" style=\"width:50%;\">"),
              "<img src=\"a\" "
              "style=\"width:50%;max-width:100%;height:auto;border-radius:4px;display:block;margin:"
              "12px 0\">");
    EXPECT_EQ(styled("<h2 id=\"a\"><a name=\"a\"></a>T</h2>"),
              "<h2 "
              "style=\"color:#111111;font-size:1.5em;font-weight:600;margin-top:1.5em;margin-"
              "bottom:0.5em;border-bottom:1px solid #F0F0F0;padding-bottom:0.3em\" id=\"a\"><a "
              "style=\"color:#007AFF;text-decoration:none\" name=\"a\"></a>T</h2>");
}

TEST(EmailPage, HostileBodiesTakeTimeInProportion) {
    for (const std::string part : {"<p ", "<p style=\"", "<pre", "<pre><code style=\"",
                                   "<img src=\"/", "<p>", "<img >{width="}) {
        std::string body;
        while (body.size() < 300'000)
            body += part;
        EXPECT_GT(MarkdownParserService::emailPage("", body, {"B", "C", 15, 1}).size(),
                  body.size());
        EXPECT_EQ(MarkdownParserService().postProcessImages(body), body);
    }
}

}  // namespace
}  // namespace corvel
