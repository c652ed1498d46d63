#include "library/Library.h"
#include "support/TestLibrary.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>

namespace corvel {
namespace {

constexpr int kSavesARound = 40;
constexpr int kRounds = 5;

std::string textOfSave(int number) {
    return "save " + std::to_string(number) + " #tag/" + std::to_string(number) + " " +
           std::string(5000, 'x');
}

/// The program that will be killed: saves one note again and again and says so after each commit.
[[noreturn]] void saveUntilKilled(const std::filesystem::path& folder,
                                  const Uuid& id,
                                  int acknowledge) {
    PersistenceController controller(PersistenceController::Storage::onDisk, folder);
    Library library(controller);
    Note note = library.notes.fetchNote(id).value();
    for (int number = 1; number <= kSavesARound; ++number) {
        note.content = textOfSave(number);
        library.notes.update(note);
        const auto byte = static_cast<char>(number);
        if (write(acknowledge, &byte, 1) != 1) break;
    }
    _exit(0);
}

/// Kills the program after `wanted` acknowledged saves, while it is at the next; returns the last
/// heard of.
int killAfter(int wanted, const std::filesystem::path& folder, const Uuid& id) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        saveUntilKilled(folder, id, ends[1]);
    }
    close(ends[1]);
    int last = 0;
    char byte = 0;
    while (last < wanted && read(ends[0], &byte, 1) == 1) {
        last = byte;
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    while (read(ends[0], &byte, 1) == 1) {
        last = byte;
    }
    close(ends[0]);
    return last;
}

TEST(Crash, AKilledProgramLosesNoSaveItAcknowledged) {
    std::mt19937 random(std::random_device{}());
    TestLibrary library;
    const Note note = library.add("start");
    for (int round = 0; round < kRounds; ++round) {
        library.close();
        const int wanted = 1 + static_cast<int>(random() % kSavesARound);
        const int acknowledged = killAfter(wanted, library.folder(), note.id);
        ASSERT_GE(acknowledged, wanted);
        library.open();
        auto check = library.controller().viewContext().database().query("PRAGMA integrity_check");
        ASSERT_TRUE(check.next());
        EXPECT_EQ(check.text(0), "ok");
        // The save after the last acknowledged one may have reached the disk before its word did.
        const auto content = library.stored(note.id).content;
        EXPECT_TRUE(content == textOfSave(acknowledged) || content == textOfSave(acknowledged + 1))
            << "acknowledged " << acknowledged << ", found " << content.substr(0, 20);
        const auto tag =
            content.substr(content.find("tag/"), content.find(" x") - content.find("tag/"));
        EXPECT_EQ(pathsOf(library.stored(note.id)).back(), tag);
    }
}

}  // namespace
}  // namespace corvel
