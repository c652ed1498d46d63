#include "library/NoteListing.h"

#include "library/RowKeys.h"
#include "model/ViewContext.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <tuple>
#include <utility>

namespace corvel {

namespace {

constexpr std::int64_t kSqlNoLimit = -1;

std::int64_t sqlLimit(std::size_t limit) {
    return limit == NoteListing::kNoLimit ? kSqlNoLimit : static_cast<std::int64_t>(limit);
}

// Orders and filters in the words of the schema's indexes; the index is named, so that a list never
// falls back to sorting a whole library.
constexpr std::array kOrders{"modifiedAt DESC", "createdAt DESC", "title", "wordCount DESC"};

struct FixedFilter {
    SidebarFilter::Kind kind;
    const char* indexPart;
    const char* where;
};
constexpr std::array kFixedFilters{
    FixedFilter{SidebarFilter::Kind::allNotes, "All", "isTrashed=0 AND isArchived=0"},
    FixedFilter{SidebarFilter::Kind::unfiled, "Unfiled",
                "isTrashed=0 AND isArchived=0 AND folderCount=0"},
    FixedFilter{SidebarFilter::Kind::localFiles, "Local",
                "isTrashed=0 AND isArchived=0 AND bookmarkData IS NOT NULL"},
    FixedFilter{SidebarFilter::Kind::archived, "Archived", "isArchived=1 AND isTrashed=0"},
    FixedFilter{SidebarFilter::Kind::trash, "Trash", "isTrashed=1"},
};

using SqlTable = std::array<std::array<std::string, kOrders.size()>, kFixedFilters.size()>;

SqlTable makeFixedSql() {
    SqlTable table;
    for (std::size_t filter = 0; filter < kFixedFilters.size(); ++filter) {
        for (std::size_t order = 0; order < kOrders.size(); ++order) {
            table[filter][order] = std::string("SELECT pk FROM note INDEXED BY list") +
                                   kFixedFilters[filter].indexPart + std::to_string(order) +
                                   " WHERE " + kFixedFilters[filter].where +
                                   " ORDER BY isPinned DESC, " + kOrders[order] + ", pk LIMIT ?";
        }
    }
    return table;
}

// Its one parameter is the limit.
Query fixedQuery(Database& database, SidebarFilter::Kind kind, std::size_t order) {
    static const SqlTable kSql = makeFixedSql();
    const auto found = std::find_if(kFixedFilters.begin(), kFixedFilters.end(),
                                    [&](const auto& row) { return row.kind == kind; });
    return database.query(kSql[static_cast<std::size_t>(found - kFixedFilters.begin())][order]);
}

// The text after every text that begins with `prefix`: no UTF-8 holds the byte 0xFF.
std::string endOfPrefix(const std::string& prefix) {
    return prefix + '\xFF';
}

// What a list is ordered by: ascending in all members.
struct SortKey {
    bool isUnpinned = true;
    std::int64_t number = 0;
    std::string title;
    RowId row = 0;
    auto operator<=>(const SortKey&) const = default;
};

SortKey readSortKey(Database& database, RowId row, SortOption sort) {
    auto query = database.query(
        "SELECT isPinned, modifiedAt, createdAt, wordCount, title FROM note WHERE pk=?");
    query.bind(row);
    SortKey key;
    key.row = row;
    if (!query.next()) return key;
    key.isUnpinned = !query.boolean(0);
    switch (sort) {
        case SortOption::modifiedDate:
            key.number = -query.integer(1);
            break;
        case SortOption::createdDate:
            key.number = -query.integer(2);
            break;
        case SortOption::wordCount:
            key.number = -query.integer(3);
            break;
        case SortOption::title:
            key.title = query.string(4);
            break;
    }
    return key;
}

// Every note carries all prefixes of its tags, so of the tags in a range those stand for all whose
// parent is outside it: for "work" these are work and workshop, not work/plan.
std::vector<std::int64_t> coveringTags(Database& database, const std::string& prefix) {
    auto query = database.query(
        "SELECT tag.pk FROM tag LEFT JOIN tag AS parent ON parent.pk=tag.parentPk"
        " WHERE tag.fullPath>=?1 AND tag.fullPath<?2 AND (parent.fullPath IS NULL OR "
        "parent.fullPath<?1)");
    const auto end = endOfPrefix(prefix);
    query.bind(prefix, end);
    return keysOf(query);
}

struct TagMember {
    bool isPinned;
    Date modifiedAt;
    RowId row;
    auto key() const { return std::tuple(!isPinned, -modifiedAt.microseconds, row); }
    bool operator<(const TagMember& other) const { return key() < other.key(); }
};

void readTagMembers(Database& database,
                    std::int64_t tagKey,
                    std::size_t limit,
                    std::vector<TagMember>& members) {
    auto query = database.query(
        "SELECT isPinned, modifiedAt, notePk FROM tagList WHERE tagPk=?"
        " ORDER BY isPinned DESC, modifiedAt DESC, notePk LIMIT ?");
    query.bind(tagKey, sqlLimit(limit));
    while (query.next()) {
        members.push_back({query.boolean(0), query.date(1), query.integer(2)});
    }
}

// A prefix may span several tags: the first rows of each are merged, and a note with several counts
// once.
std::vector<RowId> newestTagRows(Database& database, const std::string& prefix, std::size_t limit) {
    const auto tags = coveringTags(database, prefix);
    std::vector<TagMember> members;
    for (const auto tag : tags) {
        readTagMembers(database, tag, limit, members);
    }
    if (tags.size() > 1) std::sort(members.begin(), members.end());
    std::vector<RowId> rows;
    rows.reserve(std::min(members.size(), limit));
    for (const auto& member : members) {
        if (rows.size() == limit) break;
        if (rows.empty() || rows.back() != member.row) rows.push_back(member.row);
    }
    return rows;
}

std::vector<RowId> folderMembers(Database& database, const Uuid& folderID, std::size_t limit) {
    auto query = database.query(
        "SELECT notePk FROM folderList WHERE folderPk=(SELECT pk FROM folder WHERE id=?)"
        " ORDER BY isPinned DESC, modifiedAt DESC, notePk LIMIT ?");
    query.bind(folderID, sqlLimit(limit));
    return keysOf(query);
}

// Another order than the one their index has: few members are sorted by their keys, many are picked
// out of the whole list, which has an index in every order.
std::vector<RowId> inOrder(Database& database,
                           std::vector<RowId> members,
                           SortOption sort,
                           std::size_t limit) {
    constexpr std::size_t kFew = 300;
    if (members.size() <= kFew) {
        std::vector<SortKey> keys;
        std::transform(members.begin(), members.end(), std::back_inserter(keys),
                       [&](RowId row) { return readSortKey(database, row, sort); });
        std::sort(keys.begin(), keys.end());
        std::transform(keys.begin(), keys.end(), members.begin(),
                       [](const SortKey& key) { return key.row; });
        if (members.size() > limit) members.resize(limit);
        return members;
    }
    std::vector<bool> isMember(
        static_cast<std::size_t>(*std::max_element(members.begin(), members.end())) + 1);
    for (const RowId row : members) {
        isMember[static_cast<std::size_t>(row)] = true;
    }
    auto query =
        fixedQuery(database, SidebarFilter::Kind::allNotes, static_cast<std::size_t>(sort));
    query.bind(kSqlNoLimit);
    std::vector<RowId> rows;
    while (rows.size() < std::min(limit, members.size()) && query.next()) {
        const auto row = static_cast<std::size_t>(query.integer(0));
        if (row < isMember.size() && isMember[row]) rows.push_back(query.integer(0));
    }
    return rows;
}

bool matchesFixed(Database& database, SidebarFilter::Kind kind, RowId row) {
    static const auto kSql = [] {
        std::array<std::string, kFixedFilters.size()> table;
        std::transform(kFixedFilters.begin(), kFixedFilters.end(), table.begin(),
                       [](const auto& filter) {
                           return std::string("SELECT 1 FROM note WHERE pk=? AND ") + filter.where;
                       });
        return table;
    }();
    for (std::size_t i = 0; i < kFixedFilters.size(); ++i) {
        if (kFixedFilters[i].kind != kind) continue;
        auto query = database.query(kSql[i]);
        query.bind(row);
        return query.next();
    }
    return false;
}

// The longest paths say all: a/b/c stands for a and a/b too.
std::vector<std::string> longestPaths(Database& database, RowId row) {
    constexpr std::size_t kMost = 3;
    std::vector<std::string> paths;
    auto query = database.query(
        "SELECT fullPath FROM noteTag JOIN tag ON tag.pk=tagPk WHERE notePk=? AND isInText=1"
        " ORDER BY fullPath DESC");
    query.bind(row);
    std::vector<std::string> all;
    while (query.next()) {
        const auto path = query.text(0);
        const bool isAncestor = std::any_of(all.begin(), all.end(), [&](const std::string& longer) {
            return longer.size() > path.size() && longer.starts_with(path) &&
                   longer[path.size()] == '/';
        });
        if (!isAncestor) paths.emplace_back(path);
        all.emplace_back(path);
    }
    std::reverse(paths.begin(), paths.end());
    if (paths.size() > kMost) paths.resize(kMost);
    return paths;
}

}  // namespace

NoteListing::NoteListing(ViewContext& context) : m_context(context) {}

std::vector<RowId> NoteListing::rows(const SidebarFilter& filter,
                                     SortOption sort,
                                     std::size_t limit) const {
    Database& database = m_context.database();
    const bool byDate = sort == SortOption::modifiedDate;
    if (filter.kind == SidebarFilter::Kind::folder) {
        auto members = folderMembers(database, filter.folderID, byDate ? limit : kNoLimit);
        return byDate ? members : inOrder(database, std::move(members), sort, limit);
    }
    if (filter.kind == SidebarFilter::Kind::tag) {
        auto members = newestTagRows(database, filter.tagPath, byDate ? limit : kNoLimit);
        return byDate ? members : inOrder(database, std::move(members), sort, limit);
    }
    auto query = fixedQuery(database, filter.kind, static_cast<std::size_t>(sort));
    query.bind(sqlLimit(limit));
    return keysOf(query);
}

bool NoteListing::contains(const SidebarFilter& filter, RowId row) const {
    Database& database = m_context.database();
    if (filter.kind == SidebarFilter::Kind::folder) {
        auto query = database.query(
            "SELECT 1 FROM noteFolder JOIN folder ON folder.pk=folderPk JOIN note ON note.pk=notePk"
            " WHERE folder.id=? AND notePk=? AND isTrashed=0 AND isArchived=0");
        query.bind(filter.folderID, row);
        return query.next();
    }
    if (filter.kind == SidebarFilter::Kind::tag) {
        auto query = database.query(
            "SELECT 1 FROM noteTag JOIN tag ON tag.pk=tagPk JOIN note ON note.pk=notePk"
            " WHERE notePk=? AND fullPath>=? AND fullPath<? AND isAttached=1"
            " AND isTrashed=0 AND isArchived=0");
        const auto end = endOfPrefix(filter.tagPath);
        query.bind(row, filter.tagPath, end);
        return query.next();
    }
    return matchesFixed(database, filter.kind, row);
}

std::size_t NoteListing::positionFor(const std::vector<RowId>& rows,
                                     RowId row,
                                     SortOption sort) const {
    Database& database = m_context.database();
    const auto wanted = readSortKey(database, row, sort);
    const auto place = std::partition_point(rows.begin(), rows.end(), [&](RowId other) {
        return readSortKey(database, other, sort) < wanted;
    });
    return static_cast<std::size_t>(place - rows.begin());
}

std::optional<NoteSummary> NoteListing::summary(RowId row) const {
    NoteSummary summary;
    {
        auto query = m_context.database().query(
            "SELECT id, title, excerpt, createdAt, modifiedAt, wordCount, isPinned, isArchived, "
            "isTrashed,"
            " bookmarkData IS NOT NULL FROM note WHERE pk=?");
        query.bind(row);
        if (!query.next()) return std::nullopt;
        summary.row = row;
        summary.id = query.uuid(0);
        summary.title = query.string(1);
        summary.excerpt = query.string(2);
        summary.createdAt = query.date(3);
        summary.modifiedAt = query.date(4);
        summary.wordCount = static_cast<std::int32_t>(query.integer(5));
        summary.isPinned = query.boolean(6);
        summary.isArchived = query.boolean(7);
        summary.isTrashed = query.boolean(8);
        summary.isLocalFile = query.boolean(9);
    }
    summary.tagPaths = longestPaths(m_context.database(), row);
    return summary;
}

std::optional<RowId> NoteListing::rowOf(const Uuid& id) const {
    auto query = m_context.database().query("SELECT pk FROM note WHERE id=?");
    query.bind(id);
    if (!query.next()) return std::nullopt;
    return query.integer(0);
}

std::optional<Uuid> NoteListing::idOf(RowId row) const {
    auto query = m_context.database().query("SELECT id FROM note WHERE pk=?");
    query.bind(row);
    if (!query.next()) return std::nullopt;
    return query.uuid(0);
}

NoteCounts NoteListing::counts() const {
    NoteCounts counts;
    auto query = m_context.database().query("SELECT name, value FROM counter");
    while (query.next()) {
        const auto name = query.text(0);
        const auto value = query.integer(1);
        if (name == "allNotes") counts.allNotes = value;
        if (name == "unfiled") counts.unfiled = value;
        if (name == "localFiles") counts.localFiles = value;
        if (name == "archived") counts.archived = value;
        if (name == "trash") counts.trash = value;
    }
    return counts;
}

std::vector<std::string> NoteListing::tagPaths() const {
    std::vector<std::string> paths;
    auto query = m_context.database().query(
        "SELECT fullPath FROM tag WHERE listedCount>0 ORDER BY fullPath");
    while (query.next()) {
        paths.push_back(query.string(0));
    }
    return paths;
}

}  // namespace corvel
