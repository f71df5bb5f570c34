// Links to contacts, contact refusals, user properties, assignment and modal display by a
// scripted user.
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

// What links read from a file is pinned by golden/; here what Add gives.
TEST_F(LinksAndDisplay, LinksKeepTheirOrderAndLeadBackToTheContacts)
{
    auto task = newTask();
    task->Links().Add(*contact("c-ada"));
    task->Links().Add(*contact("c-ben"));
    task->Links().Add(*contact("c-ada"));          // no check for a link already there
    EXPECT_FALSE(task->Saved());
    ASSERT_EQ(task->Links().Count(), 3);
    EXPECT_EQ(task->Links().Item(3)->Name(), QStringLiteral("Byrne, Ada"));
    EXPECT_EQ(task->Links().Item(2)->Item()->get(QStringLiteral("CompanyName")), Value("Okafor Engineering"));
    EXPECT_EQ(failure([&] { task->Links().Item(4); }).number(), 9);
}

// What a card maps to, and every writable property through a save, is pinned by golden/.
TEST_F(LinksAndDisplay, ComputedContactNamesAreReadOnlyAndUnknownOnesAreFailures)
{
    auto c = contact("c-ada");
    EXPECT_TRUE(failure([&] { c->set(QStringLiteral("LastFirstNoSpace"), Value("x")); }).description().contains(QStringLiteral("read-only")));
    EXPECT_EQ(failure([&] { c->get(QStringLiteral("Shoe Size")); }).number(), vdir::fail::NoSuchProperty);
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

TEST_F(LinksAndDisplay, ModalDisplayReturnsWhenTheUserIsDoneAndTellsWhatHappened)
{
    display->onTask = [](ol::TaskItem& item) {
        item.set(QStringLiteral("Subject"), Value("Typed on the form"));
        item.Save();
    };
    auto task = newTask();
    task->Assign();
    task->Display(true);
    EXPECT_EQ(display->shown, 1);
    EXPECT_TRUE(display->lastModal);
    EXPECT_TRUE(task->Saved());
    EXPECT_FALSE(task->EntryID().isEmpty());
    auto back = reload(task->EntryID());
    EXPECT_EQ(back->Subject(), QStringLiteral("Typed on the form"));
    EXPECT_EQ(back->get(QStringLiteral("DelegationState")), Value(1)) << "Assign marks the task";

    display->onTask = [](ol::TaskItem& item) { item.set(QStringLiteral("Subject"), Value("Abandoned")); };
    auto closed = newTask();
    closed->Display(true);
    EXPECT_FALSE(closed->Saved());
    EXPECT_TRUE(closed->EntryID().isEmpty());
}
