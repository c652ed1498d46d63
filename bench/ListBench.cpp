#include "app/settings/Localisation.h"
#include "library/Library.h"
#include "library/NoteListViewModel.h"
#include "library/SidebarViewModel.h"
#include "model/PersistenceController.h"
#include "support/BenchFolder.h"
#include "support/LibraryGenerator.h"
#include "support/PairedRun.h"

#include <glibmm/init.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace corvel;

constexpr std::size_t kFirstRows = 50;
constexpr int kRounds = 15;

struct FilterCase {
    std::string name;
    SidebarFilter filter;
    std::string where;
};

std::vector<std::string> droppableIndexes(Database& database) {
    std::vector<std::string> names;
    auto query =
        database.query("SELECT name FROM sqlite_schema WHERE type='index' AND sql IS NOT NULL");
    while (query.next()) {
        names.push_back(query.string(0));
    }
    return names;
}

/// A library of `count` notes, and a copy of its database without indexes. The library's own
/// queries name their indexes, so the copy is asked the same questions in plain words.
class ListBench {
public:
    explicit ListBench(std::size_t count) {
        LibraryGenerator generator;
        const auto store = m_folder.path() / "store";
        generator.copyStore(count, store);
        const auto copy = m_folder.path() / "plain.sqlite";
        std::filesystem::copy_file(store / "qnoCorvel.sqlite", copy);
        m_controller =
            std::make_unique<PersistenceController>(PersistenceController::Storage::onDisk, store);
        m_library = std::make_unique<Library>(*m_controller);
        m_plain = std::make_unique<Database>(copy);
        for (const auto& name : droppableIndexes(*m_plain)) {
            m_plain->execute("DROP INDEX " + name);
        }
        m_tag = generator.tagPaths().front();
        m_folderID = m_library->folders.fetchRootFolders().front().id;
    }

    std::vector<FilterCase> cases() const {
        const std::string listed = "isTrashed=0 AND isArchived=0";
        return {
            {"all", {SidebarFilter::Kind::allNotes, {}, {}}, listed},
            {"unfiled", {SidebarFilter::Kind::unfiled, {}, {}}, listed + " AND folderCount=0"},
            {"local",
             {SidebarFilter::Kind::localFiles, {}, {}},
             listed + " AND bookmarkData IS NOT NULL"},
            {"archived", {SidebarFilter::Kind::archived, {}, {}}, "isArchived=1 AND isTrashed=0"},
            {"trash", {SidebarFilter::Kind::trash, {}, {}}, "isTrashed=1"},
            {"tag", SidebarFilter::tag(m_tag),
             listed +
                 " AND pk IN (SELECT notePk FROM noteTag JOIN tag ON tag.pk=tagPk"
                 " WHERE isAttached=1 AND substr(fullPath,1," +
                 "length('" + m_tag + "'))='" + m_tag + "')"},
            {"folder", SidebarFilter::folder(m_folderID),
             listed + " AND pk IN (SELECT notePk FROM noteFolder JOIN folder ON folder.pk=folderPk"
                      " WHERE folder.id=?1)"},
        };
    }

    std::vector<RowId> ours(const FilterCase& which, std::size_t limit) const {
        return m_library->listing.rows(which.filter, SortOption::modifiedDate, limit);
    }

    std::vector<RowId> plain(const std::string& sql) {
        std::vector<RowId> rows;
        auto query = m_plain->query(*m_sql.insert(sql).first);
        if (sql.find('?') != std::string::npos) query.bind(m_folderID);
        while (query.next()) {
            rows.push_back(query.integer(0));
        }
        return rows;
    }

    std::vector<std::string> plainTexts(const std::string& sql) {
        std::vector<std::string> texts;
        auto query = m_plain->query(*m_sql.insert(sql).first);
        while (query.next()) {
            texts.push_back(query.string(0));
        }
        return texts;
    }

    Library& library() { return *m_library; }

private:
    BenchFolder m_folder;
    std::unique_ptr<PersistenceController> m_controller;
    std::unique_ptr<Library> m_library;
    std::set<std::string> m_sql;  // statements are kept by their text: it outlives the database
    std::unique_ptr<Database> m_plain;
    std::string m_tag;
    Uuid m_folderID;
};

void compareLists(benchmark::State& state,
                  ListBench& bench,
                  const FilterCase& which,
                  std::size_t limit) {
    const std::string sql = "SELECT pk FROM note WHERE " + which.where +
                            " ORDER BY isPinned DESC, modifiedAt DESC, pk" +
                            (limit == NoteListing::kNoLimit ? "" : " LIMIT 50");
    const auto rows = bench.ours(which, limit);
    if (rows != bench.plain(sql)) {
        state.SkipWithError("the two sides list different notes");
        return;
    }
    PairedRun(kRounds).run(
        state, [&] { benchmark::DoNotOptimize(bench.ours(which, limit)); },
        [&] { benchmark::DoNotOptimize(bench.plain(sql)); });
    state.counters["rows"] = static_cast<double>(rows.size());
}

void compareCounts(benchmark::State& state, ListBench& bench) {
    std::vector<std::string> queries;
    for (const auto& which : bench.cases()) {
        const bool isFixed = which.filter.kind != SidebarFilter::Kind::tag &&
                             which.filter.kind != SidebarFilter::Kind::folder;
        if (isFixed) queries.push_back("SELECT count(*) FROM note WHERE " + which.where);
    }
    PairedRun(kRounds).run(
        state, [&] { benchmark::DoNotOptimize(bench.library().listing.counts()); },
        [&] {
            for (const auto& sql : queries) {
                benchmark::DoNotOptimize(bench.plain(sql));
            }
        });
}

void compareTagTree(benchmark::State& state, ListBench& bench) {
    PairedRun(kRounds).run(
        state, [&] { benchmark::DoNotOptimize(bench.library().listing.tagPaths()); },
        [&] {
            benchmark::DoNotOptimize(bench.plainTexts(
                "SELECT DISTINCT fullPath FROM tag JOIN noteTag ON tagPk=tag.pk"
                " JOIN note ON note.pk=notePk WHERE isInText=1 AND isTrashed=0 AND isArchived=0"
                " ORDER BY fullPath"));
        });
}

void compareFolderTree(benchmark::State& state, ListBench& bench) {
    PairedRun(kRounds).run(
        state, [&] { benchmark::DoNotOptimize(bench.library().folders.fetchRootFolders()); },
        [&] {
            benchmark::DoNotOptimize(bench.plainTexts(
                "SELECT name, count(note.pk) FROM folder LEFT JOIN noteFolder ON folderPk=folder.pk"
                " LEFT JOIN note ON note.pk=notePk AND isTrashed=0 AND isArchived=0"
                " GROUP BY folder.pk ORDER BY parentPk, folder.sortOrder"));
        });
}

/// What choosing another entry of the sidebar costs the main loop in one go: the list, the counts
/// and both trees. The base is reading the ids of all notes with nothing but SQLite.
void compareSwitch(benchmark::State& state, ListBench& bench) {
    const BenchFolder folder;
    UserDefaults defaults(folder.path() / "preferences.ini");
    const Preferences preferences(defaults);
    const Localisation texts(preferences);
    NotificationCenter notifications;
    NoteListViewModel list(bench.library(), notifications);
    SidebarViewModel sidebar(bench.library(), texts, notifications);
    const auto cases = bench.cases();
    std::size_t next = 0;
    double longest = 0;
    PairedRun(kRounds).run(
        state,
        [&] {
            const auto start = std::chrono::steady_clock::now();
            list.setFilter(cases[next++ % cases.size()].filter);
            sidebar.reload();
            const std::chrono::duration<double, std::milli> spent =
                std::chrono::steady_clock::now() - start;
            longest = std::max(longest, spent.count());
        },
        [&] { benchmark::DoNotOptimize(bench.plain("SELECT pk FROM note ORDER BY pk")); });
    state.counters["longest_ms"] = longest;
}

void registerAll(const std::string& prefix, ListBench& bench) {
    for (const auto& which : bench.cases()) {
        registerPaired(prefix + "first50/" + which.name, [&bench, which](auto& state) {
            compareLists(state, bench, which, kFirstRows);
        });
        registerPaired(prefix + "rows/" + which.name, [&bench, which](auto& state) {
            compareLists(state, bench, which, NoteListing::kNoLimit);
        });
    }
    registerPaired(prefix + "switch", [&bench](auto& state) { compareSwitch(state, bench); });
    registerPaired(prefix + "counts", [&bench](auto& state) { compareCounts(state, bench); });
    registerPaired(prefix + "tagTree", [&bench](auto& state) { compareTagTree(state, bench); });
    registerPaired(prefix + "folderTree",
                   [&bench](auto& state) { compareFolderTree(state, bench); });
}

/// The first rows of the larger library beside those of the smaller. Beside their copies without
/// indexes the larger one starts with its pages out of the processor's caches, the smaller not.
void registerGrowth(ListBench& smaller, ListBench& larger) {
    const auto few = smaller.cases();
    const auto many = larger.cases();
    for (std::size_t i = 0; i < few.size(); ++i) {
        registerPaired("growth/" + few[i].name, [&smaller, &larger, one = few[i],
                                                 other = many[i]](auto& state) {
            PairedRun(kRounds).run(
                state, [&] { benchmark::DoNotOptimize(larger.ours(other, kFirstRows)); },
                [&] { benchmark::DoNotOptimize(smaller.ours(one, kFirstRows)); });
        });
    }
}

}  // namespace

/// CORVEL_BENCH_NOTES chooses one size, for example 10000.
int main(int argc, char** argv) {
    Glib::init();
    benchmark::Initialize(&argc, argv);
    std::vector<std::size_t> sizes{10'000, 100'000};
    if (const char* chosen = std::getenv("CORVEL_BENCH_NOTES")) sizes = {std::stoul(chosen)};
    std::vector<std::unique_ptr<ListBench>> benches;
    for (const std::size_t size : sizes) {
        benches.push_back(std::make_unique<ListBench>(size));
        registerAll(std::to_string(size) + "/", *benches.back());
    }
    if (benches.size() == 2) registerGrowth(*benches[0], *benches[1]);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
