#include "library/Library.h"
#include "model/PersistenceController.h"
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

/// One edited note saved by the library, beside the same values written by SQLite alone.
class SaveBench {
public:
    explicit SaveBench(std::size_t size) {
        LibraryGenerator generator;
        const auto store = m_folder.path() / "store";
        generator.copyStore(kLibrarySize, store);
        m_controller =
            std::make_unique<PersistenceController>(PersistenceController::Storage::onDisk, store);
        m_library = std::make_unique<Library>(*m_controller);
        m_note = generator.generateNote(1);
        m_note.content = generator.generateText(1, size);
        m_library->notes.update(m_note);
        prepareBare();
    }

    void saveOurs() {
        edit();
        m_library->notes.update(m_note);
    }

    void saveBare() {
        edit();
        m_bare->execute("BEGIN IMMEDIATE");
        m_bare->query("UPDATE note SET modifiedAt=? WHERE id=?")
            .bind(m_note.modifiedAt, m_note.id)
            .run();
        m_bare->query("UPDATE noteContent SET content=? WHERE notePk=1").bind(m_note.content).run();
        m_bare->execute("COMMIT");
    }

private:
    // The same pragmas: both sides open their file through Database.
    void prepareBare() {
        m_bare = std::make_unique<Database>(m_folder.path() / "bare.sqlite");
        m_bare->execute(
            "CREATE TABLE note(pk INTEGER PRIMARY KEY, id BLOB NOT NULL UNIQUE, modifiedAt "
            "INTEGER);"
            "CREATE TABLE noteContent(notePk INTEGER PRIMARY KEY, content TEXT NOT NULL);");
        m_bare->query("INSERT INTO note VALUES(1,?,?)").bind(m_note.id, m_note.modifiedAt).run();
        m_bare->query("INSERT INTO noteContent VALUES(1,?)").bind(m_note.content).run();
    }

    void edit() {
        ++m_edits;
        m_note.modifiedAt = m_note.modifiedAt.plusSeconds(1);
        m_note.content.replace(m_note.content.size() - 8, 8,
                               "edit" + std::to_string(1000 + m_edits));
    }

    BenchFolder m_folder;
    std::unique_ptr<PersistenceController> m_controller;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<Database> m_bare;
    Note m_note;
    int m_edits = 0;
};

void saveAgainstBare(benchmark::State& state, std::size_t size) {
    SaveBench bench(size);
    PairedRun(kRounds).run(
        state, [&bench] { bench.saveOurs(); }, [&bench] { bench.saveBare(); });
}

}  // namespace

int main(int argc, char** argv) {
    Glib::init();
    benchmark::Initialize(&argc, argv);
    for (const std::size_t kilobytes : {2U, 100U}) {
        registerPaired("save/" + std::to_string(kilobytes) + "KB",
                       [kilobytes](auto& state) { saveAgainstBare(state, kilobytes * 1024); });
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
