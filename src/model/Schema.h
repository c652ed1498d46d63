#pragma once

#include "platform/Database.h"

namespace corvel {

/// The tables of the store. The version is kept in SQLite's `user_version`; docs/store.md describes
/// it.
namespace schema {

inline constexpr int kVersion = 4;

/// Creates the tables of an empty database or carries an older one forward, each step in a
/// transaction of its own. Throws StoreError, also for a database of a newer version than this
/// program knows.
void migrate(Database& database);

}  // namespace schema
}  // namespace corvel
