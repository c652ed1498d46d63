#include "model/BackupCheck.h"

#include "model/Schema.h"
#include "platform/FileDescriptor.h"
#include "platform/Handle.h"

#include <fcntl.h>
#include <glibmm/convert.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace corvel {

namespace {

using Kind = BackupVerdict::Kind;

using Connection = Handle<sqlite3, sqlite3_close_v2>;
using Statement = Handle<sqlite3_stmt, sqlite3_finalize>;

// Immutable: a copy has no log beside it, and none is to be made.
Connection openCopy(const std::filesystem::path& store) {
    const auto address = Glib::filename_to_uri(store.string()) + "?immutable=1";
    sqlite3* raw = nullptr;
    const int result =
        sqlite3_open_v2(address.c_str(), &raw, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    Connection connection(raw);
    if (result != SQLITE_OK) connection.reset();
    return connection;
}

// The first column of the first row; nothing for an error.
std::string answerTo(sqlite3* database, const char* sql) {
    sqlite3_stmt* raw = nullptr;
    sqlite3_prepare_v2(database, sql, -1, &raw, nullptr);
    const Statement statement(raw);
    if (!statement || sqlite3_step(raw) != SQLITE_ROW) return {};
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(raw, 0));
    return text != nullptr ? text : "";
}

std::size_t number(const std::string& text) {
    return static_cast<std::size_t>(std::strtoull(text.c_str(), nullptr, 10));
}

bool isSynced(const std::filesystem::path& file) {
    const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    return descriptor.isOpen() && ::fsync(descriptor.get()) == 0;
}

BackupVerdict verdictFrom(const std::string& line) {
    BackupVerdict verdict;
    int kind = 0;
    if (std::sscanf(line.c_str(), "%d %d %zu", &kind, &verdict.version, &verdict.notes) != 3)
        return {};
    if (kind < int(Kind::good) || kind > int(Kind::unreadable)) return {};
    verdict.kind = Kind(kind);
    return verdict;
}

std::string lineOf(const BackupVerdict& verdict) {
    return std::to_string(int(verdict.kind)) + " " + std::to_string(verdict.version) + " " +
           std::to_string(verdict.notes) + "\n";
}

}  // namespace

BackupVerdict checkBackup(const std::filesystem::path& store) {
    BackupVerdict verdict;
    const auto connection = openCopy(store);
    if (!connection || !isSynced(store)) return verdict;
    const auto version = answerTo(connection.get(), "PRAGMA user_version");
    verdict.version = static_cast<int>(number(version));
    verdict.kind = Kind::damaged;
    if (version.empty() || verdict.version < 1) return verdict;
    if (verdict.version > schema::kVersion) {
        verdict.kind = Kind::newer;
        return verdict;
    }
    const auto notes = answerTo(connection.get(), "SELECT count(*) FROM note");
    verdict.notes = number(notes);
    if (!notes.empty() && answerTo(connection.get(), "PRAGMA quick_check(1)") == "ok")
        verdict.kind = Kind::good;
    return verdict;
}

int runBackupCheck(const char* store) {
    std::fputs(lineOf(checkBackup(store)).c_str(), stdout);
    return EXIT_SUCCESS;
}

void BackupChecker::check(const std::filesystem::path& store,
                          const Glib::RefPtr<Gio::Cancellable>& cancellable,
                          Done done) const {
    const auto answer = [cancellable, done = std::move(done)](const HelperOutcome& outcome) {
        if (cancellable->is_cancelled()) return;
        done(outcome.isGood ? verdictFrom(outcome.output) : BackupVerdict{});
    };
    HelperProcess({m_executable, kBackupCheckOption, store}).work({}, cancellable, answer);
}

}  // namespace corvel
