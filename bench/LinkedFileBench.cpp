#include "library/BookmarkManager.h"
#include "library/Library.h"
#include "library/LinkedText.h"
#include "library/LocalFileNotes.h"
#include "model/PersistenceController.h"
#include "platform/FileDescriptor.h"
#include "support/BenchFolder.h"
#include "support/LibraryGenerator.h"
#include "support/PairedRun.h"

#include <fcntl.h>
#include <glibmm/init.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>

namespace {

using namespace corvel;

constexpr std::size_t kSize = 1024 * 1024;
constexpr int kRounds = 101;

std::string withCrlf(const std::string& text) {
    std::string bytes;
    for (const char character : text) {
        if (character == '\n') bytes += '\r';
        bytes += character;
    }
    return bytes;
}

/// A saved note written back to its file, beside the same bytes written, synced and renamed.
class WriteBack {
public:
    explicit WriteBack(bool isCrlf)
        : m_text(LibraryGenerator().generateText(1, kSize))
        , m_bytes(isCrlf ? withCrlf(m_text) : m_text) {
        std::ofstream(m_file, std::ios::binary) << m_bytes;
        m_known = m_bookmarks.read(m_file);
    }

    // As the session does: is the file still the known one, what becomes of it, write it.
    void writeOurs() {
        edit();
        const auto now = m_bookmarks.read(m_file);
        if (now.file.bytes != m_known.file.bytes || now.text == m_text) std::abort();
        std::string bytes = linkedText::encoded(m_text, now.file.bytes);
        const auto stamp = writeWholeFile(m_file, bytes, now.file.stamp);
        m_known = {{std::move(bytes), stamp, Date::now()}, m_text};
    }

    void writeBare() {
        edit();
        {
            const FileDescriptor file(
                ::open(m_beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
            if (::write(file.get(), m_bytes.data(), m_bytes.size()) !=
                    static_cast<ssize_t>(m_bytes.size()) ||
                ::fsync(file.get()) != 0) {
                std::abort();
            }
        }
        if (std::rename(m_beside.c_str(), m_other.c_str()) != 0) std::abort();
    }

private:
    void edit() {
        const std::string words = "edit" + std::to_string(1000 + ++m_edits);
        m_text.replace(m_text.size() - words.size(), words.size(), words);
    }

    BenchFolder m_folder;
    std::filesystem::path m_file = m_folder.path() / "note.md";
    std::filesystem::path m_other = m_folder.path() / "other.md";
    std::filesystem::path m_beside = m_folder.path() / "other.new";
    BookmarkManager m_bookmarks;
    std::string m_text;
    std::string m_bytes;
    LinkedFile m_known;
    int m_edits = 0;
};

void writeBackAgainstBare(benchmark::State& state, bool isCrlf) {
    WriteBack bench(isCrlf);
    PairedRun(kRounds).run(
        state, [&bench] { bench.writeOurs(); }, [&bench] { bench.writeBare(); });
}

/// A library of `count` notes, linked with files beside it or not: for bench/start.py.
void makeLibrary(const std::filesystem::path& folder, std::size_t count, bool isLinked) {
    std::filesystem::create_directories(folder / "files");
    PersistenceController controller(PersistenceController::Storage::onDisk, folder);
    Library library(controller);
    const LibraryGenerator generator;
    for (std::size_t number = 0; number < count; ++number) {
        auto note = generator.generateNote(number);
        library.notes.create(note);
        if (!isLinked) continue;
        LocalFileNotes(library.notes)
            .upgrade(note.id, folder / "files" / (std::to_string(number) + ".md"));
    }
}

}  // namespace

/// With `--library FOLDER COUNT linked|plain` it makes a library instead.
int main(int argc, char** argv) {
    Glib::init();
    if (argc == 5 && std::string_view(argv[1]) == "--library") {
        makeLibrary(argv[2], std::stoul(argv[3]), std::string_view(argv[4]) == "linked");
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    registerPaired("writeBack/1MB", [](auto& state) { writeBackAgainstBare(state, false); });
    registerPaired("writeBack/1MB of CRLF", [](auto& state) { writeBackAgainstBare(state, true); });
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
