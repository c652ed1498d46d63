#pragma once

#include "app/LinkedFileSession.h"
#include "platform/WholeFile.h"
#include "support/MainLoop.h"
#include "support/TestSession.h"

#include <glibmm/main.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace corvel {

/// A session in which a note can be made of a file.
class LinkedFileSessionTest : public testing::Test, protected TestSession {
protected:
    // Nothing is saved by a timer: each test says when.
    LinkedFileSessionTest() : TestSession(3600) {
        files = folder.path() / "files";
        std::filesystem::create_directory(files);
        std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
        note = files / "note.md";
    }

    Uuid openFile(const std::string& bytes) {
        write(bytes);
        const auto id = session->list.createLocalFileNote(note).noteID.value();
        session->state.selectedNoteID.set(id);
        return id;
    }
    // As a shell does: the same inode, emptied and filled.
    void write(const std::string& bytes) const { std::ofstream(note, std::ios::binary) << bytes; }
    // As most editors do.
    void replace(const std::string& bytes) const {
        std::ofstream(files / "new", std::ios::binary) << bytes;
        std::filesystem::rename(files / "new", note);
    }
    std::string fileText() const { return readWholeFile(note, 1'000'000).bytes; }
    LinkState::Kind state() const { return session->linkedFile.state().kind; }
    bool save() { return session->editor.save(); }
    LinkedFileSession::Versions seen() { return session->linkedFile.versions().value(); }
    // All that needs no waiting, such as a search.
    static void turnUntilIdle() {
        while (Glib::MainContext::get_default()->iteration(false)) {
        }
    }
    bool turnsTo(LinkState::Kind kind) {
        return turnUntil([&] { return state() == kind; });
    }
    std::optional<Bookmark> bookmarkOf(const Uuid& id) {
        return Bookmark::decode(session->library.notes.fetchNote(id)->bookmarkData.value());
    }

    std::filesystem::path files;
    std::filesystem::path note;
};

}  // namespace corvel
