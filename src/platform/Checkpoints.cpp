#include "platform/Checkpoints.h"

#include <sqlite3.h>

namespace corvel {

namespace {

/// SQLite's own limit.
constexpr int kMostPages = 1000;

}  // namespace

Checkpoints::Checkpoints(Database& database) : m_database(database) {
    sqlite3_wal_hook(
        database.handle(),
        [](void* self, sqlite3*, const char*, int pages) {
            static_cast<Checkpoints*>(self)->m_pages = pages;
            return SQLITE_OK;
        },
        this);
}

Checkpoints::~Checkpoints() {
    sqlite3_wal_autocheckpoint(m_database.handle(), kMostPages);
}

bool Checkpoints::isDue() const {
    return m_pages >= kMostPages;
}

void Checkpoints::run() {
    sqlite3_wal_checkpoint_v2(m_database.handle(), nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr,
                              nullptr);
    m_pages = 0;
}

}  // namespace corvel
