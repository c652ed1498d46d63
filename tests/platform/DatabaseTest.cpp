#include "platform/Database.h"
#include "support/StoreFaultOf.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace corvel {
namespace {

class DatabaseTest : public testing::Test {
protected:
    DatabaseTest() { database.execute("CREATE TABLE word(text TEXT UNIQUE, number INTEGER)"); }

    void add(const std::string& text, std::int64_t number) {
        database.query("INSERT INTO word VALUES(?,?)").bind(text, number).run();
    }

    TemporaryFolder folder;
    Database database{folder.path() / "store.sqlite"};
};

TEST_F(DatabaseTest, OneTextOfAQueryCanBeUsedWithinItself) {
    add("a", 1);
    add("b", 2);
    const std::string_view sql = "SELECT text FROM word WHERE number>=? ORDER BY number";
    auto outer = database.query(sql);
    outer.bind(1);
    std::string found;
    while (outer.next()) {
        auto inner = database.query(sql);
        inner.bind(2);
        while (inner.next())
            found += outer.string(0) + inner.string(0) + " ";
    }
    EXPECT_EQ(found, "ab bb ");
}

TEST_F(DatabaseTest, AStatementUsedAgainRemembersNothing) {
    const std::string_view sql = "SELECT ?1 IS NULL, (SELECT count(*) FROM word)";
    {
        auto query = database.query(sql);
        query.bind("bound");
        ASSERT_TRUE(query.next());
        EXPECT_EQ(query.integer(0), 0);
    }
    add("a", 1);
    auto again = database.query(sql);
    ASSERT_TRUE(again.next());
    EXPECT_EQ(again.integer(0), 1) << "the binding of the use before";
    EXPECT_EQ(again.integer(1), 1) << "starts anew";
}

TEST_F(DatabaseTest, AStatementThatFailedWorksTheNextTime) {
    add("a", 1);
    EXPECT_EQ(faultOf([&] { add("a", 2); }), StoreFault::invalid);
    EXPECT_FALSE(faultOf([&] { add("b", 2); }).has_value());
    EXPECT_EQ(faultOf([&] { database.query("SELECT * FROM missing"); }), StoreFault::invalid);
}

TEST_F(DatabaseTest, ForeignValuesAreReadWithoutHarm) {
    database.execute("INSERT INTO word VALUES(x'00FF', 'not a number'), (NULL, 3.7)");
    auto query = database.query("SELECT text, number FROM word ORDER BY rowid");
    ASSERT_TRUE(query.next());
    EXPECT_EQ(query.integer(1), 0);
    EXPECT_EQ(query.blob(0).size(), 2U);
    EXPECT_EQ(query.uuid(0), Uuid{}) << "two bytes are no identifier";
    EXPECT_EQ(query.uuid(1), Uuid{});
    ASSERT_TRUE(query.next());
    EXPECT_TRUE(query.isNull(0));
    EXPECT_EQ(query.string(0), "");
    EXPECT_TRUE(query.blob(0).empty());
}

TEST_F(DatabaseTest, EmptyTextAndEmptyBytesAreNotNull) {
    auto query = database.query("SELECT ?1 IS NULL, ?2 IS NULL, ?3 IS NULL");
    const std::vector<std::uint8_t> nothing;
    query.bind(std::string_view(), nothing, std::optional<std::string>());
    ASSERT_TRUE(query.next());
    EXPECT_EQ(query.integer(0), 0);
    EXPECT_EQ(query.integer(1), 0);
    EXPECT_EQ(query.integer(2), 1);
}

TEST_F(DatabaseTest, AnotherWriterIsToldAsLocked) {
    Database other(folder.path() / "store.sqlite");
    sqlite3_busy_timeout(database.handle(), 1);
    other.execute("BEGIN IMMEDIATE");
    EXPECT_EQ(faultOf([&] { add("a", 1); }), StoreFault::locked);
    other.execute("ROLLBACK");
    EXPECT_FALSE(faultOf([&] { add("a", 1); }).has_value());
}

TEST_F(DatabaseTest, AFileThatIsNoDatabaseIsToldAsCorruptAndLeftAlone) {
    const auto file = folder.path() / "other";
    const std::string words(4096, 'w');
    std::ofstream(file) << words;
    EXPECT_EQ(faultOf([&] { const Database opened(file); }), StoreFault::corrupt);
    EXPECT_EQ(std::filesystem::file_size(file), words.size());
    EXPECT_EQ(faultOf([&] { const Database opened(folder.path()); }), StoreFault::readOnly);
}

}  // namespace
}  // namespace corvel
