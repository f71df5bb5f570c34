// Links to contacts, user properties, assignment and modal display by a scripted user.
#include "VdirFixture.h"
#include "backends/vdir/DemoContacts.h"

using namespace steplets;
using namespace steplets::test;

namespace {

class LinksAndDisplay : public VdirFixture {
protected:
    LinksAndDisplay() { vdir::writeDemoContacts(tmp.file(QStringLiteral("contacts"))); }
    std::shared_ptr<ol::ContactItem> contact(const char* id)
    {
        return ol::asContact(ns->GetItemFromID(QString::fromLatin1(id), QStringLiteral("store")));
    }
};

} // namespace

TEST_F(LinksAndDisplay, LinksKeepTheirOrderAndLeadBackToTheContacts)
{
    auto task = newTask();
    task->Links().Add(*contact("c-ada"));
    task->Links().Add(*contact("c-ben"));
    task->Links().Add(*contact("c-ada"));          // no check for a link already there
    EXPECT_FALSE(task->Saved());
    task->Save();
    auto back = reload(task->EntryID());
    ASSERT_EQ(back->Links().Count(), 3);
    EXPECT_EQ(back->Links().Item(1)->Name(), QStringLiteral("Byrne, Ada"));
    EXPECT_EQ(back->Links().Item(2)->Name(), QStringLiteral("Okafor, Benjamin"));
    EXPECT_EQ(back->Links().Item(3)->EntryID(), QStringLiteral("c-ada"));
    EXPECT_EQ(back->Links().Item(2)->Item()->get(QStringLiteral("CompanyName")), Value("Okafor Engineering"));
    EXPECT_EQ(failure([&] { back->Links().Item(4); }).number(), 9);
    EXPECT_TRUE(fileText(taskFile(task->EntryID())).contains("X-STEPLETS-LINK;CN=\"Byrne, Ada\";X-STEPLETS-ENTRYID=c-ada:c-ada"));
}

// Each type through the file is pinned by golden/; here what Add and a write give, and the
// mistakes that are failures.
TEST_F(LinksAndDisplay, UserPropertiesStartAtTheirTypesDefaultAndConvertWhatIsWritten)
{
    auto task = newTask();
    auto count = task->UserProperties().Add(QStringLiteral("Visits"), ol::olInteger);
    EXPECT_EQ(count->Value(), Value(0));
    count->set(Value("7"));
    EXPECT_EQ(count->Value(), Value(7));
    EXPECT_EQ(failure([&] { count->set(Value("many")); }).number(), 13);
    task->UserProperties().Add(QStringLiteral("Billed"), ol::olYesNo);
    EXPECT_EQ(task->UserProperties().Find(QStringLiteral("Billed"))->Value(), Value(false));
    EXPECT_EQ(task->UserProperties().Find(QStringLiteral("Missing")), nullptr);
    EXPECT_TRUE(failure([&] { task->UserProperties().Add(QStringLiteral("Billed"), ol::olText); })
                    .description().contains(QStringLiteral("already")));
    EXPECT_EQ(failure([&] { task->UserProperties().Add(QStringLiteral("Odd"), 99); }).number(), vdir::fail::InvalidArgument);
}

TEST_F(LinksAndDisplay, AssignMarksTheTask)
{
    auto task = newTask();
    task->Assign();
    EXPECT_FALSE(task->Saved());
    task->Save();
    EXPECT_EQ(reload(task->EntryID())->get(QStringLiteral("DelegationState")), Value(1));
}

TEST_F(LinksAndDisplay, ModalDisplayReturnsWhenTheUserIsDoneAndTellsWhatHappened)
{
    display->onTask = [](ol::TaskItem& item) {
        item.set(QStringLiteral("Subject"), Value("Typed on the form"));
        item.Save();
    };
    auto task = newTask();
    task->Display(true);
    EXPECT_EQ(display->shown, 1);
    EXPECT_TRUE(display->lastModal);
    EXPECT_TRUE(task->Saved());
    EXPECT_FALSE(task->EntryID().isEmpty());
    EXPECT_EQ(reload(task->EntryID())->Subject(), QStringLiteral("Typed on the form"));

    display->onTask = [](ol::TaskItem& item) { item.set(QStringLiteral("Subject"), Value("Abandoned")); };
    auto closed = newTask();
    closed->Display(true);
    EXPECT_FALSE(closed->Saved());
    EXPECT_TRUE(closed->EntryID().isEmpty());
}
