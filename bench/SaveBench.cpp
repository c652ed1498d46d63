#include "library/Library.h"
#include "model/PersistenceController.h"
#include "support/BareDatabase.h"
#include "support/BenchFolder.h"
#include "support/LibraryGenerator.h"
#include "support/PairedRun.h"

#include <glibmm/init.h>

#include <memory>
#include <string>

namespace {

using namespace corvel;

constexpr std::size_t kLibrarySize = 1000;
constexpr int kRounds = 101;
// As many as empty the log of either side once: from then on it is written over, not made longer.
constexpr int kRoundsOfALog = 600;

enum class Log { fresh, used };

/// The values of a note written by SQLite alone.
class BareNote {
public:
    BareNote(const std::filesystem::path& file, const Note& note) : m_database(open(file)) {
        SQLite::Statement insert(*m_database, "INSERT INTO note VALUES(1,?,0)");
        bindId(insert, 1, note);
        insert.exec();
    }

    void save(const Note& note) {
        run(m_begin);
        m_date.bind(1, note.modifiedAt.microseconds);
        bindId(m_date, 2, note);
        run(m_date);
        m_content.bindNoCopy(1, note.content);
        run(m_content);
        run(m_commit);
    }

private:
    static std::unique_ptr<BareDatabase> open(const std::filesystem::path& file) {
        auto database = std::make_unique<BareDatabase>(file);
        database->exec(
            "CREATE TABLE note(pk INTEGER PRIMARY KEY, id BLOB NOT NULL UNIQUE, modifiedAt "
            "INTEGER);"
            "CREATE TABLE noteContent(notePk INTEGER PRIMARY KEY, content TEXT NOT NULL);"
            "INSERT INTO noteContent VALUES(1, '');");
        return database;
    }

    static void bindId(SQLite::Statement& statement, int position, const Note& note) {
        statement.bindNoCopy(position, note.id.bytes.data(),
                             static_cast<int>(note.id.bytes.size()));
    }

    std::unique_ptr<BareDatabase> m_database;
    SQLite::Statement m_begin{*m_database, "BEGIN IMMEDIATE"};
    SQLite::Statement m_date{*m_database, "UPDATE note SET modifiedAt=? WHERE id=?"};
    SQLite::Statement m_content{*m_database, "UPDATE noteContent SET content=? WHERE notePk=1"};
    SQLite::Statement m_commit{*m_database, "COMMIT"};
};

/// One edited note saved by the library, beside its bare row.
class SaveBench {
public:
    SaveBench(std::size_t size, Log log) {
        LibraryGenerator generator;
        const auto store = m_folder.path() / "store";
        generator.copyStore(kLibrarySize, store);
        m_controller =
            std::make_unique<PersistenceController>(PersistenceController::Storage::onDisk, store);
        m_library = std::make_unique<Library>(*m_controller);
        m_note = generator.generateNote(1);
        m_note.content = generator.generateText(1, size);
        m_library->notes.update(m_note);
        m_bare = std::make_unique<BareNote>(m_folder.path() / "bare.sqlite", m_note);
        for (int round = 0; log == Log::used && round < kRoundsOfALog; ++round) {
            saveOurs();
            saveBare();
        }
    }

    void saveOurs() {
        edit();
        m_library->notes.update(m_note);
    }

    void saveBare() {
        edit();
        m_bare->save(m_note);
    }

private:
    void edit() {
        ++m_edits;
        m_note.modifiedAt = m_note.modifiedAt.plusSeconds(1);
        m_note.content.replace(m_note.content.size() - 8, 8,
                               "edit" + std::to_string(1000 + m_edits));
    }

    BenchFolder m_folder;
    std::unique_ptr<PersistenceController> m_controller;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<BareNote> m_bare;
    Note m_note;
    int m_edits = 0;
};

void saveAgainstBare(benchmark::State& state, std::size_t size, Log log) {
    SaveBench bench(size, log);
    PairedRun(kRounds).run(
        state, [&bench] { bench.saveOurs(); }, [&bench] { bench.saveBare(); });
}

}  // namespace

int main(int argc, char** argv) {
    Glib::init();
    benchmark::Initialize(&argc, argv);
    for (const std::size_t kilobytes : {2U, 100U}) {
        const auto name = "save/" + std::to_string(kilobytes) + "KB/";
        for (const auto log : {Log::fresh, Log::used}) {
            registerPaired(
                name + (log == Log::fresh ? "newLog" : "usedLog"),
                [kilobytes, log](auto& state) { saveAgainstBare(state, kilobytes * 1024, log); });
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
