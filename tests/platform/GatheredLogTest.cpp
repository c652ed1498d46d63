#include "platform/Database.h"
#include "support/FullDisk.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace corvel {
namespace {

/// Calls of the system that wrote to files, of this process.
std::int64_t writesSoFar() {
    std::ifstream counters("/proc/self/io");
    std::string name;
    for (std::int64_t value = 0; counters >> name >> value;) {
        if (name == "syscw:") return value;
    }
    return -1;
}

class GatheredLogTest : public testing::Test {
protected:
    GatheredLogTest() {
        FullDisk::makePossible();
        database = std::make_unique<Database>(file);
        database->execute("CREATE TABLE note(pk INTEGER PRIMARY KEY, text TEXT)");
    }

    void add(int count, char letter) {
        for (int number = 0; number < count; ++number) {
            database->query("INSERT INTO note(text) VALUES(?)")
                .bind(std::string(3000, letter))
                .run();
        }
    }

    static std::string answer(Database& of, std::string_view sql) {
        auto query = of.query(sql);
        return query.next() ? query.string(0) : "nothing";
    }

    static constexpr std::string_view kCounts =
        "SELECT group_concat(letter||number) FROM (SELECT substr(text,1,1) AS letter, count(*) AS"
        " number FROM note GROUP BY 1 ORDER BY 1)";

    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "store.sqlite";
    std::unique_ptr<Database> database;
};

TEST_F(GatheredLogTest, ACommitIsOutInFewWritesWhenItIsAcknowledged) {
    database->execute("BEGIN");
    add(10, 'a');
    const auto before = writesSoFar();
    ASSERT_GE(before, 0);
    database->execute("COMMIT");
    EXPECT_LE(writesSoFar() - before, 2) << "10 pages in pieces of 24 and 4096 bytes";
    // As after a crash: what other programs find in the files, not what this one has in memory.
    const auto copy = folder.path() / "copy.sqlite";
    std::filesystem::copy_file(file, copy);
    std::filesystem::copy_file(file.string() + "-wal", copy.string() + "-wal");
    Database recovered(copy);
    EXPECT_EQ(answer(recovered, kCounts), "a10");
    Database beside(file);
    EXPECT_EQ(answer(beside, kCounts), "a10");
}

TEST_F(GatheredLogTest, ATransactionLargerThanTheCacheIsReadBackRewrittenAndRolledBack) {
    database->execute("PRAGMA cache_size=10");
    for (const bool isKept : {false, true}) {
        database->execute("BEGIN");
        add(300, 'a');
        database->execute("UPDATE note SET text='b'||text WHERE pk%7=0");
        EXPECT_EQ(answer(*database, kCounts), "a258,b42");
        Database beside(file);
        EXPECT_EQ(answer(beside, "SELECT count(*) FROM note"), "0") << "not committed";
        database->execute(isKept ? "COMMIT" : "ROLLBACK");
        EXPECT_EQ(answer(beside, "SELECT count(*) FROM note"), isKept ? "300" : "0");
    }
    EXPECT_EQ(answer(*database, "PRAGMA integrity_check"), "ok");
    database->execute("PRAGMA wal_checkpoint(TRUNCATE)");
    database->execute("UPDATE note SET text='c'");
    EXPECT_EQ(answer(*database, kCounts), "c300");
    database.reset();
    Database again(file);
    EXPECT_EQ(answer(again, kCounts), "c300");
    EXPECT_EQ(answer(again, "PRAGMA integrity_check"), "ok");
}

TEST_F(GatheredLogTest, ARowLargerThanWhatIsGatheredIsWrittenWhole) {
    const std::string large(3'000'000, 'x');
    database->query("INSERT INTO note(text) VALUES(?)").bind(large).run();
    Database beside(file);
    EXPECT_EQ(answer(beside, "SELECT text FROM note"), large);
}

TEST_F(GatheredLogTest, WhatFindsNoRoomIsNoCommitAndLeavesTheLogUsable) {
    add(3, 'a');
    {
        const FullDisk fullDisk;
        try {
            add(1, 'b');
            FAIL() << "acknowledged without room";
        } catch (const StoreError& error) {
            EXPECT_EQ(error.fault(), StoreFault::diskFull);
        }
    }
    Database beside(file);
    EXPECT_EQ(answer(beside, kCounts), "a3");
    add(2, 'c');
    EXPECT_EQ(answer(beside, kCounts), "a3,c2");
    EXPECT_EQ(answer(beside, "PRAGMA integrity_check"), "ok");
}

}  // namespace
}  // namespace corvel
