#include "model/ViewContext.h"
#include "support/FullDisk.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

class ViewContextTest : public testing::Test {
protected:
    ViewContextTest() {
        FullDisk::makePossible();
        open();
        m_database->execute("CREATE TABLE word(text TEXT UNIQUE)");
    }

    void open() {
        m_context.reset();
        m_database.reset();
        m_database = std::make_unique<Database>(m_folder.path() / "store.sqlite");
        m_context = std::make_unique<ViewContext>(*m_database);
    }

    void add(const std::string& text, const std::string& key = {}) {
        m_context->apply(
            [text](Database& database) {
                database.query("INSERT OR REPLACE INTO word VALUES(?)").bind(text).run();
            },
            key);
    }

    std::string words() {
        auto query = m_database->query(
            "SELECT group_concat(text, ' ') FROM (SELECT text FROM word ORDER BY 1)");
        return query.next() ? query.string(0) : std::string();
    }

    TemporaryFolder m_folder;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<ViewContext> m_context;
};

TEST_F(ViewContextTest, UnsavedChangesAreSeenButNotKept) {
    add("one");
    EXPECT_EQ(words(), "one");
    EXPECT_TRUE(m_context->hasChanges());
    open();
    EXPECT_EQ(words(), "");
    add("two");
    m_context->save();
    EXPECT_FALSE(m_context->hasChanges());
    open();
    EXPECT_EQ(words(), "two");
}

TEST_F(ViewContextTest, SavingWithoutChangesWritesNothing) {
    const auto before = sqlite3_total_changes64(m_database->handle());
    const FullDisk fullDisk;
    EXPECT_NO_THROW(m_context->save());
    EXPECT_EQ(sqlite3_total_changes64(m_database->handle()), before);
}

TEST_F(ViewContextTest, AFullDiskKeepsEveryChangeForTheNextSave) {
    add("before");
    m_context->save();
    add("first");
    add("second");
    {
        const FullDisk fullDisk;
        try {
            m_context->save();
            FAIL() << "a full disk saved";
        } catch (const StoreError& error) {
            EXPECT_EQ(error.fault(), StoreFault::diskFull);
        }
        EXPECT_TRUE(m_context->hasChanges());
        EXPECT_EQ(words(), "before first second");
        add("third");
        EXPECT_THROW(m_context->save(), StoreError);
    }
    m_context->save();
    EXPECT_FALSE(m_context->hasChanges());
    open();
    EXPECT_EQ(words(), "before first second third");
}

TEST_F(ViewContextTest, AChangeLargerThanTheCacheOutlivesAFullDisk) {
    m_database->execute("PRAGMA cache_size=10");
    const std::string large(1'000'000, 'x');
    {
        const FullDisk fullDisk;  // the cache spills: the statement itself fails, not the commit
        EXPECT_THROW(add(large), StoreError);
        EXPECT_TRUE(m_context->hasChanges());
    }
    m_context->save();
    open();
    EXPECT_EQ(words(), large);
}

TEST_F(ViewContextTest, AChangeThatCanNeverWorkLeavesNothingBehind) {
    add("kept");
    EXPECT_THROW(m_context->apply([](Database& database) {
        database.query("INSERT INTO word VALUES('half')").run();
        database.query("INSERT INTO word VALUES('kept')").run();
    }),
                 StoreError);
    EXPECT_EQ(words(), "kept");
    m_context->save();
    open();
    EXPECT_EQ(words(), "kept");
}

TEST_F(ViewContextTest, ANewerChangeOfTheSameKeyReplacesTheOlder) {
    const FullDisk fullDisk;
    add("draft 1", "note");
    EXPECT_THROW(m_context->save(), StoreError);
    add("draft 2", "note");
    EXPECT_THROW(m_context->save(), StoreError);
    EXPECT_EQ(words(), "draft 2");
}

TEST_F(ViewContextTest, AGroupIsOneCommit) {
    ViewContext::Group group(*m_context);
    add("one");
    m_context->save();
    EXPECT_TRUE(m_context->hasChanges());
    add("two");
    group.commit();
    EXPECT_FALSE(m_context->hasChanges());
    open();
    EXPECT_EQ(words(), "one two");
}

TEST_F(ViewContextTest, ABatchIsSavedByWhoeverSaves) {
    ViewContext::Batch batch(*m_context);
    batch.apply([&] { add("one"); });
    batch.apply([&] { add("two"); });
    EXPECT_TRUE(batch.isUnsaved());
    add("mine");
    m_context->save();
    EXPECT_FALSE(batch.isUnsaved());
    batch.apply([&] { add("three"); });
    batch.takeBack();
    EXPECT_EQ(words(), "mine one two");
    EXPECT_FALSE(m_context->hasChanges());
}

TEST_F(ViewContextTest, ABatchIsTakenBackWithoutWhatOthersChanged) {
    {
        ViewContext::Batch batch(*m_context);
        add("mine", "key");
        batch.apply([&] { add("ours", "key"); });
        add("later", "key");
        {
            const FullDisk fullDisk;
            EXPECT_THROW(m_context->save(), StoreError);
        }
        EXPECT_TRUE(batch.isUnsaved());
        EXPECT_THROW(batch.apply([] { throw StoreError(StoreFault::failed, "it"); }), StoreError);
        add("last");
    }
    EXPECT_EQ(words(), "last later mine");
    m_context->save();
    open();
    EXPECT_EQ(words(), "last later mine");
}

TEST_F(ViewContextTest, NothingRemainsOfABatchsChangeThatFailsHalfway) {
    ViewContext::Batch batch(*m_context);
    add("mine");
    batch.apply([&] { add("ours"); });
    const auto failing = [&] {
        m_context->apply([](Database& database) {
            database.execute("INSERT INTO word VALUES('half')");
            throw StoreError(StoreFault::invalid, "it");
        });
    };
    EXPECT_THROW(batch.apply(failing), StoreError);
    EXPECT_EQ(words(), "mine ours");
    m_context->save();
    EXPECT_THROW(batch.apply(failing), StoreError);
    EXPECT_EQ(words(), "mine ours");
    EXPECT_FALSE(m_context->hasChanges());
}

}  // namespace
}  // namespace corvel
