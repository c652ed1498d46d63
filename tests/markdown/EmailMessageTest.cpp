#include "markdown/EmailImages.h"
#include "markdown/EmailMessage.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>

namespace corvel {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

constexpr const char* kReader = R"py(
import email, email.policy, sys
m = email.message_from_binary_file(open(sys.argv[1], "rb"), policy=email.policy.default)
def show(part, depth):
    for defect in part.defects: print("DEFECT", defect)
    print("%s%s" % ("-" * depth, part.get_content_type()), part["Content-ID"] or "")
    if part.is_multipart():
        for inner in part.iter_parts(): show(inner, depth + 1)
    elif part.get_content_maintype() == "text": print(repr(part.get_content()))
    else: print(part.get_content().hex())
print("|".join(m.keys()))
print(repr(str(m["Subject"])))
print(m["Date"].datetime.isoformat())
show(m, 0)
raw = open(sys.argv[1], "rb").read()
print(max(len(line) for line in raw.split(b"\r\n")) <= 78, raw.count(b"\n") == raw.count(b"\r\n"))
)py";

/// What another implementation of the standard reads from a message.
std::string readByPython(const std::string& message) {
    const TemporaryFolder folder;
    const auto script = folder.write("read.py", kReader);
    const auto file = folder.write("message.eml", message);
    const std::string command = "python3 '" + script.string() + "' '" + file.string() + "' 2>&1";
    std::string output;
    std::FILE* pipe = popen(command.c_str(), "r");
    std::array<char, 4096> buffer{};
    while (const auto count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        output.append(buffer.data(), count);
    }
    pclose(pipe);
    return output;
}

TEST(EmailMessage, AnotherReaderFindsSubjectTextAndImages) {
    const std::string html = "<p>ż</p><img src=\"data:image/png;base64,AAEC\" alt=\"\">";
    const std::string read =
        readByPython(emailMessage({"Zażółć gęślą jaźń, a temat jest naprawdę bardzo długi: 日本語 "
                                   "🙂 i jeszcze dalej",
                                   "ż\nb\n", html, Date::fromSeconds(1'790'000'000)}));
    EXPECT_EQ(read,
              "Subject|Date|MIME-Version|X-Unsent|Content-Type\n"
              "'Zażółć gęślą jaźń, a temat jest naprawdę bardzo długi: 日本語 🙂 i "
              "jeszcze "
              "dalej'\n"
              "2026-09-21T14:13:20+00:00\n"
              "multipart/alternative \n"
              "-text/plain \n"
              "'ż\\r\\nb\\r\\n'\n"
              "-multipart/related \n"
              "--text/html \n"
              "'<p>ż</p><img src=\"cid:image1@qno-corvel\" alt=\"\">'\n"
              "--image/png <image1@qno-corvel>\n"
              "000102\n"
              "True True\n");
}

TEST(EmailMessage, NothingOfANoteBecomesAHeaderOrABoundary) {
    const std::string read = readByPython(emailMessage(
        {"a\r\nBcc: everyone@example.org", "--=_corvel_alternatives--\r\n",
         "--=_corvel_alternatives--<img src=\"data:image/png\r\nX-Evil: 1;base64,AAAA\">",
         Date::fromSeconds(0)}));
    EXPECT_THAT(read, testing::StartsWith("Subject|Date|MIME-Version|X-Unsent|Content-Type\n"));
    EXPECT_THAT(read, HasSubstr("'--=_corvel_alternatives--\\r\\n'"));
    EXPECT_THAT(read, HasSubstr("'a  Bcc: everyone@example.org'"));
    EXPECT_THAT(read, HasSubstr("-text/html \n"));
    EXPECT_THAT(read, Not(HasSubstr("DEFECT")));
    const std::string plain = emailMessage({"Plain", "", "", Date::fromSeconds(0)});
    EXPECT_THAT(plain,
                testing::StartsWith("Subject: Plain\r\nDate: Thu, 01 Jan 1970 00:00:00 +0000"));
}

TEST(EmailImages, OnlySoundUrlsAreTakenAndEachOnce) {
    const auto taken = EmailImages::takenFrom(
        "<img src=\"data:image/png;base64,AAAA\"><img src=\"data:image/png;base64,AAAA\">"
        "<img src=\"data:image/gif;base64,not base64\"><img src=\"data:image/svg+xml,%3Csvg\">"
        "<img src=\"data:image/gif;base64,BBBB\"><img src=\"data:image/png;base64,never ends");
    ASSERT_THAT(taken.images, SizeIs(2));
    EXPECT_EQ(taken.images[1].mimeType, "image/gif");
    EXPECT_EQ(
        taken.html,
        "<img src=\"cid:image1@qno-corvel\"><img src=\"cid:image1@qno-corvel\">"
        "<img src=\"data:image/gif;base64,not base64\"><img src=\"data:image/svg+xml,%3Csvg\">"
        "<img src=\"cid:image2@qno-corvel\"><img src=\"data:image/png;base64,never ends");
}

}  // namespace
}  // namespace corvel
