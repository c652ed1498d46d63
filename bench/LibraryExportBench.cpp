#include "export/LibraryExporter.h"
#include "library/Library.h"
#include "model/PersistenceController.h"
#include "support/BenchFolder.h"
#include "support/LibraryGenerator.h"
#include "support/LoopSlices.h"
#include "support/PairedRun.h"

#include <glibmm/init.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace {

using namespace corvel;
namespace fs = std::filesystem;

constexpr std::size_t kNotes = 10'000;
constexpr int kRounds = 5;

/// A library of ten thousand notes exported, beside copying the exported files one by one into
/// folders like theirs and waiting for the disk in the same way.
class LibraryExportBench {
public:
    LibraryExportBench() {
        LibraryGenerator().copyStore(kNotes, m_folder.path() / "store");
        m_controller = std::make_unique<PersistenceController>(
            PersistenceController::Storage::onDisk, m_folder.path() / "store");
        m_library = std::make_unique<Library>(*m_controller);
        exportAll();
        m_original = m_last;
    }

    void exportAll() {
        LibraryExporter exporter(*m_library);
        bool isDone = false;
        m_last = m_folder.path() / ("export" + std::to_string(m_runs++));
        exporter.start(m_last, "Trash", {}, [&](const LibraryExportReport& report) {
            isDone = true;
            m_exported = report.notes;
        });
        m_slices.runUntil([&isDone] { return isDone; });
    }

    void copyAll() {
        const auto to = m_folder.path() / ("copy" + std::to_string(m_runs++));
        fs::create_directory(to);
        for (fs::recursive_directory_iterator entry(m_original), end; entry != end; ++entry) {
            const auto target = to / entry->path().lexically_relative(m_original);
            if (entry->is_directory()) {
                fs::create_directory(target);
            } else {
                fs::copy_file(entry->path(), target);
            }
        }
        const auto command = "sync -f '" + to.string() + "'";
        if (std::system(command.c_str()) != 0) std::abort();
    }

    std::size_t exported() const { return m_exported; }
    const LoopSlices& slices() const { return m_slices; }

private:
    BenchFolder m_folder;
    std::unique_ptr<PersistenceController> m_controller;
    std::unique_ptr<Library> m_library;
    fs::path m_original;
    fs::path m_last;
    int m_runs = 0;
    std::size_t m_exported = 0;
    LoopSlices m_slices;
};

void compareExport(benchmark::State& state) {
    LibraryExportBench bench;
    PairedRun(kRounds).run(
        state, [&] { bench.exportAll(); }, [&] { bench.copyAll(); });
    if (bench.exported() != kNotes) state.SkipWithError("not every note was exported");
    bench.slices().report(state);
}

}  // namespace

int main(int argc, char** argv) {
    Glib::init();
    benchmark::Initialize(&argc, argv);
    registerPaired("libraryExport/10000notes", compareExport);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
