// What keeping unsaved words costs: the key itself, a second's flush, and the first flush after a
// save, which writes the text down. The other side is a write of the same bytes.
#include "library/DraftJournal.h"
#include "support/BenchFolder.h"
#include "support/PairedRun.h"

#include <fstream>
#include <string>
#include <utility>

namespace corvel {
namespace {

constexpr int kRounds = 200;
constexpr int kKeysAFlush = 10;

class Typing {
public:
    explicit Typing(std::size_t size) : m_base(size, 'x') {}

    void keys() {
        for (int i = 0; i < kKeysAFlush; ++i) {
            m_journal.add({m_offset++, 0, "a"});
        }
    }
    void flush() {
        m_journal.flush(m_id, m_base, [] { return std::string(); });
    }
    void save() { m_journal.discard(); }
    void writeBare(const std::string& bytes) const {
        std::ofstream(m_folder.path() / "bare", std::ios::binary) << bytes;
    }
    const std::string& base() const { return m_base; }

private:
    BenchFolder m_folder;
    DraftJournal m_journal{m_folder.path() / "drafts"};
    Uuid m_id = Uuid::random();
    std::string m_base;
    std::size_t m_offset = 0;
};

void secondOfTyping(benchmark::State& state, std::size_t size) {
    Typing typing(size);
    typing.keys();
    typing.flush();
    PairedRun(kRounds).run(
        state,
        [&] {
            typing.keys();
            typing.flush();
        },
        [&] { typing.writeBare(std::string(64, 'a')); });
}

void firstAfterSave(benchmark::State& state, std::size_t size) {
    Typing typing(size);
    PairedRun(kRounds / 4)
        .run(
            state,
            [&] {
                typing.save();
                typing.keys();
                typing.flush();
            },
            [&] { typing.writeBare(typing.base()); });
}

}  // namespace
}  // namespace corvel

int main(int argc, char** argv) {
    using namespace corvel;
    for (const auto& [name, size] : {std::pair{"2KB", 2'000}, std::pair{"10MB", 10'000'000}}) {
        const auto bytes = static_cast<std::size_t>(size);
        registerPaired(std::string("SecondOfTyping/") + name,
                       [bytes](benchmark::State& state) { secondOfTyping(state, bytes); });
        registerPaired(std::string("FirstAfterSave/") + name,
                       [bytes](benchmark::State& state) { firstAfterSave(state, bytes); });
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
