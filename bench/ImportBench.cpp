#include "library/Library.h"
#include "library/MarkdownImporter.h"
#include "library/NoteText.h"
#include "model/PersistenceController.h"
#include "support/BareDatabase.h"
#include "support/BenchFolder.h"
#include "support/LibraryGenerator.h"
#include "support/LoopSlices.h"
#include "support/PairedRun.h"

#include <glibmm/init.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace corvel;

constexpr std::size_t kFiles = 10'000;
constexpr std::size_t kLarge = std::size_t{50} * 1024 * 1024;
constexpr std::size_t kFolders = 5000;
constexpr std::size_t kFoldersTogether = 50;
constexpr std::size_t kSmall = 2048;
constexpr int kRounds = 3;
constexpr std::size_t kRowsACommit = 200;

struct Files {
    std::size_t count;
    std::optional<std::size_t> size;  ///< bytes of each, or none for those of a library
    bool isEachInAFolder = false;     ///< of its own, fifty of them in one above; folders are kept
};

/// Markdown files imported into an empty library, beside reading them and writing bare
/// rows of title and text, with the same pragmas and a commit for every 200.
class ImportBench {
public:
    explicit ImportBench(const Files& files) {
        const LibraryGenerator generator;
        m_options.keepFolders = files.isEachInAFolder;
        for (std::size_t number = 0; number < files.count; ++number) {
            auto folder = m_folder.path() / "in";
            if (files.isEachInAFolder)
                folder /= std::to_string(number / kFoldersTogether) + "/" + std::to_string(number);
            std::filesystem::create_directories(folder);
            m_files.push_back(folder / (std::to_string(number) + ".md"));
            std::ofstream(m_files.back(), std::ios::binary)
                << (files.size ? generator.generateText(number, *files.size)
                               : generator.generateNote(number).content);
        }
    }

    void importAll() {
        const auto store = freshFolder();
        PersistenceController controller(PersistenceController::Storage::onDisk, store);
        Library library(controller);
        MarkdownImporter importer(library);
        bool isDone = false;
        importer.start({m_folder.path() / "in"}, m_options, {}, [&](const ImportReport& report) {
            isDone = true;
            m_imported = report.imported;
        });
        m_slices.runUntil([&isDone] { return isDone; });
    }

    void writeBare() {
        BareDatabase database(freshFolder() / "bare.sqlite");
        database.exec("CREATE TABLE note(pk INTEGER PRIMARY KEY, title TEXT, content TEXT)");
        SQLite::Statement insert(database, "INSERT INTO note(title, content) VALUES(?,?)");
        for (std::size_t number = 0; number < m_files.size(); ++number) {
            if (number % kRowsACommit == 0) database.exec("BEGIN IMMEDIATE");
            std::ifstream file(m_files[number], std::ios::binary);
            const std::string content{std::istreambuf_iterator<char>(file), {}};
            const std::string title = titleFromContent(content);
            insert.bindNoCopy(1, title);
            insert.bindNoCopy(2, content);
            run(insert);
            const bool isLast = number + 1 == m_files.size();
            if (isLast || (number + 1) % kRowsACommit == 0) database.exec("COMMIT");
        }
    }

    std::size_t imported() const { return m_imported; }
    const LoopSlices& slices() const { return m_slices; }

private:
    std::filesystem::path freshFolder() {
        auto folder = m_folder.path() / ("run" + std::to_string(m_runs++));
        std::filesystem::create_directories(folder);
        return folder;
    }

    BenchFolder m_folder;
    ImportOptions m_options;
    std::vector<std::filesystem::path> m_files;
    int m_runs = 0;
    std::size_t m_imported = 0;
    LoopSlices m_slices;
};

void compareImport(benchmark::State& state, const Files& files) {
    ImportBench bench(files);
    PairedRun(kRounds).run(
        state, [&] { bench.importAll(); }, [&] { bench.writeBare(); });
    if (bench.imported() != files.count) state.SkipWithError("not every file was imported");
    bench.slices().report(state);
}

}  // namespace

int main(int argc, char** argv) {
    Glib::init();
    benchmark::Initialize(&argc, argv);
    registerPaired("import/10000files", [](auto& state) { compareImport(state, {kFiles, {}}); });
    registerPaired("import/5000folders", [](auto& state) {
        compareImport(state, {kFolders, kSmall, true});
    });
    registerPaired("import/50MB", [](auto& state) { compareImport(state, {1, kLarge}); });
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
