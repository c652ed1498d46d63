#include "library/AttachmentSweep.h"
#include "support/TestLibrary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace corvel {
namespace {

class AttachmentSweepTest : public testing::Test {
protected:
    Uuid attach(const Note& note, std::size_t size = 10) {
        const Uuid id = Uuid::random();
        library->attachments.create({id, "a.png", "image/png", std::vector<std::uint8_t>(size), {}},
                                    note.id);
        return id;
    }
    static std::string reference(const Uuid& id) {
        return "![](attachment://" + id.toString() + ")";
    }
    bool exists(const Uuid& id) { return library->attachments.fetchAttachment(id).has_value(); }
    void write(Note& note, const std::string& content) {
        note.content = content;
        library->notes.update(note);
    }
    void finish(AttachmentSweep& sweep) {
        while (sweep.work(std::chrono::milliseconds(1))) {
        }
    }

    TestLibrary library;
};

TEST_F(AttachmentSweepTest, WhatAnyTextNamesStaysAndTheRestGoesWithItsFile) {
    Note owner = library.add("owner");
    const Uuid named = attach(owner);
    const Uuid forgotten = attach(owner, 200'000);
    const Uuid copied = attach(owner);
    const Uuid inTrash = attach(owner);
    std::string lower = reference(named);
    std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return std::tolower(c); });
    write(owner, "text " + lower);
    for (int i = 0; i < 120; ++i) {
        library.add("other " + std::to_string(i));
    }
    library.add("a copy of " + reference(copied));
    library->notes.moveToTrash(library.add(reference(inTrash)).id);
    const auto file = library.folder() / "qnoCorvel_files" / forgotten.toString();
    ASSERT_TRUE(std::filesystem::exists(file));
    AttachmentSweep sweep(*library);
    finish(sweep);
    EXPECT_TRUE(exists(named) && exists(copied) && exists(inTrash));
    EXPECT_FALSE(exists(forgotten));
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(AttachmentSweepTest, ATextKeepsAllThatItNamesWhateverStandsBetween) {
    Note owner = library.add("owner");
    const Uuid first = attach(owner);
    const Uuid second = attach(owner);
    const Uuid third = attach(owner);
    write(owner, reference(first) + " attachment:// attachment://" + reference(second));
    library.add("copies " + reference(first) + reference(third));
    AttachmentSweep sweep(*library);
    finish(sweep);
    EXPECT_TRUE(exists(first));
    EXPECT_TRUE(exists(second));
    EXPECT_TRUE(exists(third));
}

TEST_F(AttachmentSweepTest, AReferenceWrittenMeanwhileKeepsIt) {
    Note owner = library.add("owner");
    const Uuid id = attach(owner);
    for (int i = 0; i < 200; ++i) {
        library.add("other " + std::to_string(i));
    }
    AttachmentSweep sweep(*library);
    // The candidates, then the first texts: the owner's was read by then.
    ASSERT_TRUE(sweep.work(std::chrono::milliseconds(0)));
    ASSERT_TRUE(sweep.work(std::chrono::milliseconds(0)));
    write(owner, "pasted " + reference(id));
    finish(sweep);
    EXPECT_TRUE(exists(id));
    library->notes.deletePermanently(owner.id);
    EXPECT_FALSE(exists(id)) << "goes with its note";
}

}  // namespace
}  // namespace corvel
