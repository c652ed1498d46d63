#include "platform/Database.h"
#include "support/FullDisk.h"
#include "support/StoreFaultOf.h"
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
        database->execute("CREATE TABLE note(pk INTEGER PRIMARY KEY, text TEXT NOT NULL)");
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
    EXPECT_LE(writesSoFar() - before, 8) << "10 pages are 20 pieces";
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
    Database beside(file);
    {
        const FullDisk fullDisk;
        for (int attempt = 0; attempt < 2; ++attempt) {
            EXPECT_EQ(faultOf([this] { add(1, 'b'); }), StoreFault::diskFull);
            EXPECT_EQ(answer(*database, kCounts), "a3") << "still to be read";
            EXPECT_EQ(answer(beside, kCounts), "a3");
        }
    }
    add(2, 'c');
    EXPECT_EQ(answer(beside, kCounts), "a3,c2");
    EXPECT_EQ(answer(beside, "PRAGMA integrity_check"), "ok");
}

// A statement that fails may be undone alone: what was gathered before it must not be missing when
// the rest is committed.
TEST_F(GatheredLogTest, WhatWasWrittenBeforeTheDiskWasFullIsThereWhenTheRestIsCommitted) {
    for (const int rows : {3, 12, 40, 300}) {
        database->execute("DELETE FROM note; PRAGMA cache_size=10");
        database->execute("BEGIN");
        add(rows, 'a');
        {
            const FullDisk fullDisk;
            faultOf([this] { database->execute("UPDATE note SET text='b'||text WHERE pk%2=0"); });
            faultOf([this] { answer(*database, "SELECT sum(length(text)) FROM note"); });
        }
        std::string expected = "nothing";
        if (database->inTransaction()) {
            expected = answer(*database, kCounts);
            database->execute("COMMIT");
        } else {
            add(1, 'c');
            expected = "c1";
        }
        const auto copy = folder.path() / ("copy" + std::to_string(rows));
        std::filesystem::copy_file(file, copy);
        std::filesystem::copy_file(file.string() + "-wal", copy.string() + "-wal");
        Database recovered(copy);
        EXPECT_EQ(answer(recovered, kCounts), expected) << rows;
        EXPECT_EQ(answer(recovered, "PRAGMA integrity_check"), "ok") << rows;
        EXPECT_EQ(answer(*database, "PRAGMA integrity_check"), "ok") << rows;
    }
}

}  // namespace
}  // namespace corvel
