#pragma once

namespace corvel {

/// While one lives, every write of SQLite to a file fails as on a full disk, at the moment when the
/// bytes would reach the disk. `makePossible` has to be called before the database is opened.
class FullDisk {
public:
    static void makePossible();

    FullDisk();
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk();
};

}  // namespace corvel
