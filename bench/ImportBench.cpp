#include "library/Library.h"
#include "library/MarkdownImporter.h"
#include "library/NoteText.h"
#include "model/PersistenceController.h"
#include "support/BenchFolder.h"
#include "support/LibraryGenerator.h"
#include "support/PairedRun.h"

#include <glibmm/init.h>
#include <glibmm/main.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace corvel;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kFiles = 10'000;
constexpr int kRounds = 3;
constexpr std::size_t kRowsACommit = 200;

/// Ten thousand Markdown files imported into an empty library, beside reading them and writing bare
/// rows of title and text, with the same pragmas and a commit for every 200.
class ImportBench {
public:
    ImportBench() {
        const LibraryGenerator generator;
        for (std::size_t number = 0; number < kFiles; ++number) {
            m_files.push_back(m_folder.path() / "in" / (std::to_string(number) + ".md"));
            std::filesystem::create_directories(m_files.back().parent_path());
            std::ofstream(m_files.back(), std::ios::binary)
                << generator.generateNote(number).content;
        }
    }

    void importAll() {
        const auto store = freshFolder();
        PersistenceController controller(PersistenceController::Storage::onDisk, store);
        Library library(controller);
        MarkdownImporter importer(library);
        bool isDone = false;
        importer.start({m_folder.path() / "in"}, {}, {}, [&](const ImportReport& report) {
            isDone = true;
            m_imported = report.imported;
        });
        const auto context = Glib::MainContext::get_default();
        while (!isDone) {
            const auto start = Clock::now();
            const auto cpuStart = std::clock();
            context->iteration(true);
            m_longestSlice = std::max(m_longestSlice, Clock::now() - start);
            m_longestCpu = std::max(m_longestCpu, std::clock() - cpuStart);
        }
    }

    void writeBare() {
        Database database(freshFolder() / "bare.sqlite");
        database.execute("CREATE TABLE note(pk INTEGER PRIMARY KEY, title TEXT, content TEXT)");
        for (std::size_t number = 0; number < m_files.size(); ++number) {
            if (number % kRowsACommit == 0) database.execute("BEGIN IMMEDIATE");
            std::ifstream file(m_files[number], std::ios::binary);
            const std::string content{std::istreambuf_iterator<char>(file), {}};
            const std::string title = titleFromContent(content);
            database.query("INSERT INTO note(title, content) VALUES(?,?)")
                .bind(title, content)
                .run();
            const bool isLast = number + 1 == m_files.size();
            if (isLast || (number + 1) % kRowsACommit == 0) database.execute("COMMIT");
        }
    }

    std::size_t imported() const { return m_imported; }
    double longestSliceMilliseconds() const {
        return std::chrono::duration<double, std::milli>(m_longestSlice).count();
    }
    /// What the processor spent on the costliest slice: other work on the machine has no part in
    /// it.
    double costliestSliceMilliseconds() const {
        return 1000.0 * static_cast<double>(m_longestCpu) / CLOCKS_PER_SEC;
    }

private:
    std::filesystem::path freshFolder() {
        auto folder = m_folder.path() / ("run" + std::to_string(m_runs++));
        std::filesystem::create_directories(folder);
        return folder;
    }

    BenchFolder m_folder;
    std::vector<std::filesystem::path> m_files;
    int m_runs = 0;
    std::size_t m_imported = 0;
    Clock::duration m_longestSlice{};
    std::clock_t m_longestCpu = 0;
};

void compareImport(benchmark::State& state) {
    ImportBench bench;
    PairedRun(kRounds).run(
        state, [&] { bench.importAll(); }, [&] { bench.writeBare(); });
    if (bench.imported() != kFiles) state.SkipWithError("not every file was imported");
    state.counters["longest_slice_ms"] = bench.longestSliceMilliseconds();
    state.counters["costliest_slice_ms"] = bench.costliestSliceMilliseconds();
}

}  // namespace

int main(int argc, char** argv) {
    Glib::init();
    benchmark::Initialize(&argc, argv);
    registerPaired("import/10000files", compareImport);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
