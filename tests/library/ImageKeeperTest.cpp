#include "library/ImageKeeper.h"
#include "platform/ImageType.h"
#include "support/FullDisk.h"
#include "support/TestLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace corvel {
namespace {

using namespace std::string_view_literals;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto kPng = "\x89PNG\r\n\x1A\n rest of it"sv;

TEST(ImageType, IsToldByTheContentAlone) {
    EXPECT_EQ(imageTypeOf(kPng), "image/png");
    EXPECT_EQ(imageTypeOf("\xFF\xD8\xFF\xE0 jpeg"), "image/jpeg");
    EXPECT_EQ(imageTypeOf("GIF89a.."), "image/gif");
    EXPECT_EQ(imageTypeOf("RIFF\1\2\3\4WEBPVP8 "), "image/webp");
    EXPECT_EQ(imageTypeOf("FORM\1\2\3\4WEBPVP8 "), "");
    EXPECT_EQ(imageTypeOf("\0\0\0 ftypavif...."sv), "image/avif");
    EXPECT_EQ(imageTypeOf("II*\0\x8\0\0\0"sv), "image/tiff");
    EXPECT_EQ(imageTypeOf("<svg xmlns='http://www.w3.org/2000/svg'/>"), "image/svg+xml");
    EXPECT_EQ(
        imageTypeOf("\xEF\xBB\xBF<?xml version='1.0'?>\n<!-- <html> --><!DOCTYPE svg>\n<svg>"),
        "image/svg+xml");
    EXPECT_EQ(imageTypeOf("<html><svg></svg></html>"), "");
    EXPECT_EQ(imageTypeOf("BMW is no bitmap, though it begins so"), "");
    EXPECT_EQ(imageTypeOf("<!-- never closed"), "");
    EXPECT_EQ(imageTypeOf(""), "");
}

class ImageKeeperTest : public testing::Test {
protected:
    std::filesystem::path file(const std::string& name, std::string_view bytes) const {
        std::ofstream(folder.path() / name, std::ios::binary) << bytes;
        return folder.path() / name;
    }
    ImageFault faultOf(const std::filesystem::path& path) {
        return std::get<ImageFault>(keeper.takeFile(path, note.id));
    }

    TemporaryFolder folder;
    TestLibrary library;
    Note note = library.add("text");
    ImageKeeper keeper{*library};
};

TEST_F(ImageKeeperTest, AnImageBecomesAnAttachmentThatItsMarkdownNames) {
    const auto taken = keeper.takeFile(file("zrzut [1].txt", kPng), note.id);
    const auto attachments = library->attachments.fetchAttachments(note.id);
    ASSERT_THAT(attachments, SizeIs(1));
    EXPECT_EQ(attachments[0].mimeType, "image/png") << "the name does not matter";
    EXPECT_EQ(attachments[0].filename, "zrzut [1].png");
    EXPECT_EQ(attachments[0].data, std::vector<std::uint8_t>(kPng.begin(), kPng.end()));
    EXPECT_EQ(std::get<std::string>(taken),
              "![zrzut \\[1\\]](attachment://" + attachments[0].id.toString() + ")");
}

TEST_F(ImageKeeperTest, WhatCannotBeTakenSaysWhyAndLeavesNothing) {
    EXPECT_EQ(faultOf(file("picture.png", "a text")), ImageFault::notAnImage);
    EXPECT_EQ(faultOf(folder.path() / "gone.png"), ImageFault::unreadable);
    EXPECT_EQ(faultOf(folder.path()), ImageFault::unreadable);
    const auto large = file("large.png", kPng);
    std::filesystem::resize_file(large, ImageKeeper::kLargest + 1);
    EXPECT_EQ(faultOf(large), ImageFault::tooLarge);
    EXPECT_THAT(library->attachments.fetchAttachments(note.id), IsEmpty());
}

TEST_F(ImageKeeperTest, AStoreThatRefusesKeepsNothingForLater) {
    FullDisk::makePossible();
    library.reopen();
    ImageKeeper again(*library);
    testing::internal::CaptureStdout();
    {
        const FullDisk fullDisk;
        const auto taken = again.take({kPng.begin(), kPng.end()}, "obraz", note.id);
        EXPECT_EQ(std::get<ImageFault>(taken), ImageFault::store);
    }
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                testing::StartsWith("Error importing image: "));
    EXPECT_FALSE(library.controller().viewContext().hasChanges());
    EXPECT_THAT(library->attachments.fetchAttachments(note.id), IsEmpty());
}

}  // namespace
}  // namespace corvel
