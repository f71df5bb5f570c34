// Item windows under the scripted host: Display records the item, and a modal display lets the
// script change the real item (a vdir task file) and close it with or without saving.
#include "TempDir.h"
#include "TestWindow.h"
#include "VdirStore.h"

using namespace steplets;
using namespace steplets::test;

class ItemWindow : public ::testing::Test {
protected:
    void open(const char* steps) {
        host = std::shared_ptr<scripted::ScriptedHost>(hostWith(steps).release());
        vdir::VdirConfig config;
        config.root = dir.path();
        store = std::make_shared<vdir::VdirStore>(config, host);
        store->ensureCollection(QStringLiteral("tasks"));
        task = store->newTask(QStringLiteral("tasks"));
        task->set(QStringLiteral("Subject"), Value(QStringLiteral("File return")));
        task->Save();
    }
    QString storedSubject() {
        auto again = ol::asTask(store->itemFor(store->load(task->EntryID())));
        return again->get(QStringLiteral("Subject")).toText();
    }

    TempDir dir;
    std::shared_ptr<scripted::ScriptedHost> host;
    std::shared_ptr<vdir::VdirStore> store;
    std::shared_ptr<ol::TaskItem> task;
};

TEST_F(ItemWindow, SaveAndCloseWritesWhatTheUserChanged) {
    open(R"([{"item": {"set": {"Subject": "File the return"}}},
             {"item": {"set": {"DueDate": "2026-04-15T00:00:00"}, "close": "save"}}])");
    task->Display(true);
    EXPECT_EQ(storedSubject(), QStringLiteral("File the return"));
    EXPECT_TRUE(task->Saved());
    EXPECT_EQ(host->script().remaining(), 0) << "the window stayed open until a step closed it";
    const QJsonObject shown = host->events().at(0).toObject().value("display").toObject();
    EXPECT_EQ(shown, (QJsonObject{{"EntryID", task->EntryID()}, {"kind", "task"}}));
}

TEST_F(ItemWindow, CloseWithoutSavingLeavesTheItemUnsaved) {
    open(R"([{"item": {"set": {"Subject": "Changed"}, "close": "discard"}}])");
    task->Display(true);
    EXPECT_FALSE(task->Saved());
    EXPECT_EQ(storedSubject(), QStringLiteral("File return"));
}

TEST_F(ItemWindow, ANonModalDisplayOnlyRecordsTheItem) {
    open("[]");
    task->Display(false);
    EXPECT_EQ(host->events().size(), 1);
}

TEST_F(ItemWindow, APropertyTheItemRefusesCannotBeEntered) {
    open(R"([{"item": {"set": {"NoSuchProperty": 1}, "close": "save"}}])");
    try {
        task->Display(true);
        FAIL() << "the step was played";
    } catch (const HostAbort& a) {
        EXPECT_EQ(a.reason(), HostAbort::Reason::CannotPlay);
        EXPECT_TRUE(a.message().startsWith(QStringLiteral("step 1 (act in an item window): the item refuses NoSuchProperty")))
            << a.message().toStdString();
    }
}
