#include "support/LibraryGenerator.h"

#include "library/FolderRepository.h"
#include "library/Library.h"
#include "library/NoteRepository.h"
#include "model/PersistenceController.h"
#include "support/TextGenerator.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <iostream>

namespace corvel {

namespace {

constexpr std::size_t kBatch = 500;
constexpr std::size_t kEveryLarge = 400;
constexpr std::size_t kEveryHuge = 20'000;
constexpr std::size_t kLarge = std::size_t{100} * 1024;
constexpr std::size_t kHuge = std::size_t{1024} * 1024;
constexpr Date kNewest = Date::fromSeconds(1'735'689'600);  // 2025-01-01
constexpr std::size_t kTenYearsInMinutes = std::size_t{10} * 365 * 24 * 60;
constexpr std::array<const char*, 8> kRoots{"praca", "dom",     "nauka", "podróże",
                                            "ideas", "reading", "house", "work"};

std::vector<std::string> makeTagPaths() {
    std::vector<std::string> paths(kRoots.begin(), kRoots.end());
    // Each further tag hangs below an earlier one, at most three segments deep.
    for (std::size_t parent = 0; paths.size() < LibraryGenerator::kTagCount; ++parent) {
        const std::string path = paths[parent];
        for (int child = 0; child < 5 && paths.size() < LibraryGenerator::kTagCount; ++child) {
            paths.push_back(path + "/t" + std::to_string(paths.size()));
        }
    }
    return paths;
}

std::size_t sizeOf(std::size_t number, TextGenerator& random) {
    if (number % kEveryHuge == kEveryHuge / 2) return kHuge;
    if (number % kEveryLarge == kEveryLarge / 2) return kLarge;
    // Log-normal around 2 KB: the sum of twelve even draws is close enough to a normal one.
    double normal = -6;
    for (int draw = 0; draw < 12; ++draw) {
        normal += static_cast<double>(random.below(10'000)) / 10'000;
    }
    return static_cast<std::size_t>(2048 * std::exp(0.8 * normal));
}

Uuid idOf(std::uint32_t seed, std::size_t number, TextGenerator& random) {
    Uuid id;
    for (std::size_t index = 0; index < 8; ++index) {
        id.bytes[index] = static_cast<std::uint8_t>(random.below(256));
        id.bytes[8 + index] = static_cast<std::uint8_t>(number >> (8 * index));
    }
    id.bytes[8] = static_cast<std::uint8_t>(id.bytes[8] ^ (seed & 0xFFU));
    return id;
}

void setStates(Note& note, std::size_t number) {
    note.isPinned = number % 97 == 3;
    note.isArchived = number % 20 == 7;
    note.isTrashed = number % 33 == 5;
    if (note.isTrashed) note.trashedAt = note.modifiedAt;
    if (number % 50 == 9) {
        note.sourceFilePath = "/home/user/Documents/note-" + std::to_string(number) + ".md";
        note.bookmarkData = std::vector<std::uint8_t>{'b', 'o', 'o', 'k'};
    }
}

std::vector<Uuid> createFolders(FolderRepository& folders) {
    std::vector<Uuid> ids;
    for (std::size_t index = 0; index < LibraryGenerator::kFolderCount; ++index) {
        // Ten at the top, the others five to a parent.
        const auto parent = index < 10 ? std::nullopt : std::optional(ids[(index - 10) / 5]);
        ids.push_back(folders.createFolder("Folder " + std::to_string(index), parent).id);
    }
    return ids;
}

}  // namespace

LibraryGenerator::LibraryGenerator(std::uint32_t seed) : m_seed(seed), m_tagPaths(makeTagPaths()) {}

Note LibraryGenerator::generateNote(std::size_t number) const {
    const auto language =
        number % 2 == 0 ? TextGenerator::Language::polish : TextGenerator::Language::english;
    TextGenerator random((std::uint64_t{m_seed} << 32U) + number, language, m_tagPaths);
    Note note;
    note.id = idOf(m_seed, number, random);
    note.title = random.title();
    note.content = random.note(note.title, sizeOf(number, random));
    const auto age = static_cast<double>(random.below(kTenYearsInMinutes));
    note.createdAt = kNewest.plusSeconds(-60 * age);
    note.modifiedAt = note.createdAt.plusSeconds(
        60 * static_cast<double>(random.below(static_cast<std::size_t>(age) + 1)));
    setStates(note, number);
    return note;
}

std::string LibraryGenerator::generateText(std::size_t number, std::size_t size) const {
    TextGenerator random((std::uint64_t{m_seed} << 32U) + number, TextGenerator::Language::english,
                         m_tagPaths);
    const auto title = random.title();
    return random.note(title, size);
}

void LibraryGenerator::fillStore(PersistenceController& controller, std::size_t count) const {
    Library library(controller);
    const auto folders = createFolders(library.folders);
    for (std::size_t number = 0; number < count; ++number) {
        Note note = generateNote(number);
        // Three notes in four are in a folder, one in twelve is in two.
        if (number % 4 != 0) note.folderIDs.push_back(folders[number % folders.size()]);
        if (number % 12 == 1) note.folderIDs.push_back(folders[(number / 12 + 7) % folders.size()]);
        library.notes.createUnsaved(note);
        if (number % kBatch == kBatch - 1) controller.viewContext().save();
    }
    controller.viewContext().save();
}

std::filesystem::path LibraryGenerator::cachedStore(std::size_t count) const {
    const char* chosen = std::getenv("CORVEL_BENCH_CACHE");
    const std::filesystem::path cache = chosen != nullptr ? chosen : CORVEL_BENCH_CACHE;
    auto folder = cache / ("library-" + std::to_string(count) + "-" + std::to_string(m_seed));
    if (std::filesystem::exists(folder)) return folder;
    std::cerr << "filling a library of " << count << " notes\n";
    // Renamed when whole: a run that was broken off leaves nothing that looks finished.
    const std::filesystem::path part = folder.string() + ".part";
    std::filesystem::remove_all(part);
    {
        PersistenceController controller(PersistenceController::Storage::onDisk, part);
        fillStore(controller, count);
    }
    std::filesystem::rename(part, folder);
    return folder;
}

void LibraryGenerator::copyStore(std::size_t count, const std::filesystem::path& folder) const {
    std::filesystem::copy(cachedStore(count), folder, std::filesystem::copy_options::recursive);
}

}  // namespace corvel
