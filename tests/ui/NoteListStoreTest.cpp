#include "library/Library.h"
#include "library/NoteListViewModel.h"
#include "model/PersistenceController.h"
#include "platform/NotificationCenter.h"
#include "support/TemporaryFolder.h"
#include "ui/NoteListStore.h"

#include <giomm/init.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace corvel {
namespace {

constexpr std::size_t kNotes = 700;
constexpr std::size_t kFewRows = 60;

/// A list and what a widget makes of its store's signals.
class NoteListStoreTest : public testing::Test {
protected:
    NoteListStoreTest() {
        Gio::init();
        ViewContext::Group group(controller.viewContext());
        for (std::size_t number = 0; number < kNotes; ++number) {
            add(static_cast<std::int64_t>(number));
        }
        group.commit();
        store = NoteListStore::create(list);
        store->signal_items_changed().connect([this](guint position, guint removed, guint added) {
            const auto at = mirror.begin() + position;
            mirror.insert(mirror.erase(at, at + removed), added, 0);
            for (guint row = position; row < position + added; ++row) {
                mirror[row] = told(row);
            }
        });
        list.signalSpliced().connect([this](const ListSplice& change) {
            change.added > kFewRows ? store->spliceAnew(change) : store->splice(change);
        });
    }

    void add(std::int64_t second) {
        Note note;
        note.id = Uuid::random();
        note.title = "Note " + std::to_string(second);
        note.modifiedAt = Date::fromSeconds(second);
        library.notes.createUnsaved(note);
    }

    RowId told(guint position) {
        const auto item = std::dynamic_pointer_cast<NoteItem>(store->get_object(position));
        return item ? item->row() : 0;
    }

    /// The first rows of the list, as many as the store has told of.
    std::vector<RowId> listed() {
        std::vector<RowId> rows;
        for (std::size_t i = 0; i < mirror.size(); ++i) {
            rows.push_back(list.rowAt(i));
        }
        return rows;
    }

    TemporaryFolder folder;
    PersistenceController controller{PersistenceController::Storage::onDisk,
                                     folder.path() / "store"};
    Library library{controller};
    NotificationCenter notifications;
    NoteListViewModel list{library, notifications};
    Glib::RefPtr<NoteListStore> store;
    std::vector<RowId> mirror;
};

TEST_F(NoteListStoreTest, BeginsWithAScreenfulAndGrowsToTheWholeList) {
    list.reload();
    ASSERT_EQ(list.size(), kNotes);
    EXPECT_LT(mirror.size(), kFewRows);
    EXPECT_GT(mirror.size(), 0U);
    while (!store->isWhole()) {
        store->grow();
        EXPECT_EQ(mirror, listed());
    }
    EXPECT_EQ(mirror.size(), kNotes);
}

TEST_F(NoteListStoreTest, TellsOfARowThatIsWantedAndOfAllBeforeIt) {
    list.reload();
    store->growPast(400);
    EXPECT_GT(mirror.size(), 400U);
    EXPECT_EQ(mirror, listed());
    store->growPast(kNotes);
    EXPECT_TRUE(store->isWhole());
    EXPECT_EQ(mirror.size(), kNotes);
}

TEST_F(NoteListStoreTest, StaysTheListsBeginningWhateverChangesWhileItGrows) {
    list.reload();
    std::mt19937 random(7);  // NOLINT(bugprone-random-generator-seed)
    for (int step = 0; step < 120; ++step) {
        const auto id = list.summaryAt(random() % list.size())->id;
        switch (random() % 4) {
            case 0:
                library.notes.togglePin(id);
                break;
            case 1:
                library.notes.moveToTrash(id);
                break;
            case 2:
                list.createNote();
                break;
            default:
                if (step % 10 == 0) store->grow();
        }
        ASSERT_EQ(mirror, listed()) << "after step " << step;
    }
    list.setSearchQuery("no such text");
    list.setSearchQuery({});
    EXPECT_EQ(mirror, listed());
    EXPECT_LT(mirror.size(), kFewRows) << "another list begins anew";
}

}  // namespace
}  // namespace corvel
