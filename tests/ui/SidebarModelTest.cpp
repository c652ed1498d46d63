#include "ui/SidebarModel.h"
#include "ui/WindowTest.h"

#include <string>
#include <vector>

namespace corvel {
namespace {

using Names = std::vector<std::string>;

SidebarNode folderNode(const std::string& name, std::int64_t count, std::uint8_t number) {
    Uuid id;
    id.bytes.back() = number;
    return {SidebarNode::Kind::folder, SidebarFilter::folder(id), name, "folder", count, {}};
}

Names namesIn(const SidebarItem::Store& store) {
    Names names;
    for (guint i = 0; i < store.get_n_items(); ++i) {
        names.push_back(store.get_item(i)->node().name);
    }
    return names;
}

class SidebarModelTest : public WindowTest {
protected:
    SidebarModelTest() { session.sidebar.reload(); }

    void update() { model.update(session.sidebar, session.texts); }

    Names rows() const {
        Names names;
        for (guint i = 0; i < model.tree()->get_n_items(); ++i) {
            names.push_back(model.itemAt(i)->node().name);
        }
        return names;
    }
    bool shows(const std::string& name) const {
        const auto names = rows();
        return std::find(names.begin(), names.end(), name) != names.end();
    }

    SidebarModel model;
};

TEST_F(SidebarModelTest, AnItemLivesOnThroughReloadsWhateverHappensAroundIt) {
    const auto store = SidebarItem::Store::create();
    SidebarItem::reconcile(*store.get(), {folderNode("a", 1, 1), folderNode("b", 2, 2)});
    const auto b = store->get_item(1);
    int changes = 0;
    b->signalChanged().connect([&] { ++changes; });
    int spliced = 0;
    store->signal_items_changed().connect([&](guint, guint, guint) { ++spliced; });

    SidebarItem::reconcile(*store.get(), {folderNode("a", 1, 1), folderNode("b", 2, 2)});
    EXPECT_EQ(spliced, 0);
    EXPECT_EQ(changes, 0);
    SidebarItem::reconcile(*store.get(),
                           {folderNode("a", 1, 1), folderNode("new", 0, 3), folderNode("b", 5, 2)});
    EXPECT_EQ(namesIn(*store.get()), (Names{"a", "new", "b"}));
    EXPECT_EQ(store->get_item(2), b);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(b->node().count, 5);
    SidebarItem::reconcile(*store.get(), {folderNode("renamed", 5, 2), folderNode("a", 1, 1)});
    EXPECT_EQ(namesIn(*store.get()), (Names{"renamed", "a"}));
    SidebarItem::reconcile(*store.get(), {});
    EXPECT_EQ(store->get_n_items(), 0U);
}

TEST_F(SidebarModelTest, ChildrenComeAndGoWithoutTheirParentBeingMadeAnew) {
    const auto store = SidebarItem::Store::create();
    auto top = folderNode("parent", 0, 1);
    SidebarItem::reconcile(*store.get(), {top});
    const auto item = store->get_item(0);
    EXPECT_FALSE(item->hasChildren());
    top.children = {folderNode("child", 3, 2)};
    SidebarItem::reconcile(*store.get(), {top});
    EXPECT_EQ(store->get_item(0)->key(), item->key());
    EXPECT_EQ(namesIn(*store->get_item(0)->children().get()), Names{"child"});
    top.children.clear();
    SidebarItem::reconcile(*store.get(), {top});
    EXPECT_FALSE(store->get_item(0)->hasChildren());
}

TEST_F(SidebarModelTest, WhatWasExpandedIsSoAgainAfterARestart) {
    const auto outer = session.sidebar.createFolder("Outer", std::nullopt);
    ASSERT_TRUE(outer.has_value());
    ASSERT_TRUE(session.sidebar.createFolder("Inner", outer->id).has_value());
    update();
    EXPECT_FALSE(shows("Inner"));
    const auto key = SidebarFilter::folder(outer->id).toString();
    ASSERT_TRUE(model.positionOf(key).has_value());
    model.setExpanded(key, true);
    model.restoreExpanded();
    EXPECT_TRUE(shows("Inner"));

    SidebarModel next;
    next.setExpandedText(model.expandedText());
    next.update(session.sidebar, session.texts);
    EXPECT_EQ(next.tree()->get_n_items(), model.tree()->get_n_items());
    next.setExpandedText("nonsense \n;;" + std::string(3, '\0'));
    next.update(session.sidebar, session.texts);
    EXPECT_TRUE(next.positionOf(key).has_value());
}

TEST_F(SidebarModelTest, SaysTheFixedEntriesInTheChosenLanguage) {
    update();
    EXPECT_EQ(rows().front(), "Wszystkie notatki");
    session.preferences.setAppLanguage("en");
    update();
    EXPECT_EQ(rows().front(), "All Notes");
}

}  // namespace
}  // namespace corvel
