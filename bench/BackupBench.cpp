#include "library/BackupJob.h"
#include "library/Library.h"
#include "library/NoteText.h"
#include "model/PersistenceController.h"
#include "platform/ScopedConnection.h"
#include "support/BenchFolder.h"
#include "support/LibraryGenerator.h"
#include "support/LoopSlices.h"

#include <benchmark/benchmark.h>
#include <glibmm/init.h>
#include <glibmm/main.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace corvel;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kNotes = 2'900;
constexpr std::size_t kBytesANote = std::size_t{100} * 1024;  // 300 MB in all
constexpr std::size_t kNotesACommit = 100;
constexpr std::chrono::milliseconds kBetweenSaves{200};

Note noteOf(const LibraryGenerator& generator, std::size_t number) {
    Note note;
    note.id = Uuid::random();
    note.content = generator.generateText(number, kBytesANote);
    note.title = titleFromContent(note.content);
    note.createdAt = note.modifiedAt = Date::now();
    return note;
}

/// How long the main loop is held up while a library of 300 MB is backed up and one note is saved
/// five times a second, a save being a turn of its own.
class BackupBench {
public:
    BackupBench()
        : m_controller(PersistenceController::Storage::onDisk, m_folder.path() / "store")
        , m_library(m_controller) {
        const LibraryGenerator generator;
        for (std::size_t number = 0; number < kNotes;) {
            ViewContext::Group group(m_controller.viewContext());
            for (std::size_t i = 0; i < kNotesACommit; ++i)
                m_library.notes.createUnsaved(m_note = noteOf(generator, number++));
            group.commit();
        }
    }

    bool run() {
        bool isDone = false;
        bool isGood = false;
        BackupJob job(m_controller, BackupChecker());
        job.start(BackupKind::daily, {}, [&](const BackupOutcome& outcome) {
            isDone = true;
            isGood = outcome.made.has_value();
            if (outcome.made) m_bytes = outcome.made->bytes;
        });
        const ScopedConnection saving(Glib::signal_timeout().connect(
            [this] {
                save();
                return true;
            },
            static_cast<unsigned>(kBetweenSaves.count())));
        m_slices.runUntil([&isDone] { return isDone; });
        return isGood;
    }

    void report(benchmark::State& state) {
        m_slices.report(state);
        state.counters["MB"] = static_cast<double>(m_bytes) / 1e6;
        std::sort(m_saves.begin(), m_saves.end());
        if (m_saves.empty()) return;
        state.counters["median_save_ms"] = m_saves[m_saves.size() / 2];
        state.counters["longest_save_ms"] = m_saves.back();
    }

private:
    void save() {
        const auto start = Clock::now();
        m_note.content += " word";
        m_library.notes.update(m_note);
        m_saves.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }

    BenchFolder m_folder;
    PersistenceController m_controller;
    Library m_library;
    Note m_note;
    std::uintmax_t m_bytes = 0;
    LoopSlices m_slices;
    std::vector<double> m_saves;
};

void backUp(benchmark::State& state) {
    BackupBench bench;
    for (auto _ : state) {
        if (!bench.run()) state.SkipWithError("no backup was made");
    }
    bench.report(state);
}

}  // namespace

int main(int argc, char** argv) {
    // The helper that checks the copy is this program.
    if (argc == 3 && std::string_view(argv[1]) == kBackupCheckOption)
        return runBackupCheck(argv[2]);
    Glib::init();
    benchmark::Initialize(&argc, argv);
    benchmark::RegisterBenchmark("backup/300MB", backUp)->Iterations(1)->Unit(benchmark::kSecond);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
