// Filters with the criteria the system uses, and the selection marks they carry.
#include "StoreFixture.h"

namespace steplets::test {
namespace {

class RecordsetFilter : public StoreFixture {
protected:
    void SetUp() override
    {
        StoreFixture::SetUp();
        ids = addTemplates({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d"), QStringLiteral("e")});
        rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    }

    void mark(int id)
    {
        rs->Filter(QStringLiteral("ID = %1").arg(id));
        rs->Fields(QStringLiteral("Tag")).setValue(Value(Int16(-1)));
        rs->Update();
        rs->Filter(0L);
    }

    std::vector<int> ids;
    std::shared_ptr<Recordset> rs;
};

TEST_F(RecordsetFilter, NumberCriterionNarrowsCountMovesAndCurrentRow)
{
    rs->Move(3);
    rs->Filter(QStringLiteral("ID = %1").arg(ids[1]));
    EXPECT_EQ(rs->currentFilter(), QStringLiteral("ID = %1").arg(ids[1]));
    EXPECT_EQ(rs->RecordCount(), 1);
    EXPECT_EQ(rs->Fields(36).value(), Value("b")) << "the current row is the first match";
    rs->MoveNext();
    EXPECT_TRUE(rs->EOF_());

    rs->Filter(QStringLiteral("ID = 999"));
    EXPECT_TRUE(rs->BOF() && rs->EOF_());
    EXPECT_EQ(rs->RecordCount(), 0);

    rs->Filter(0L);
    EXPECT_EQ(rs->RecordCount(), 5);
    EXPECT_EQ(rs->Fields(36).value(), Value("a"));
    EXPECT_TRUE(rs->currentFilter().isEmpty());
}

TEST_F(RecordsetFilter, TextCriterionIsExactAndTakesQuotedQuotes)
{
    rs->Fields(36).setValue(Value("O'Brien"));
    rs->Update();
    rs->Filter(QStringLiteral("Subject = 'O''Brien'"));
    EXPECT_EQ(rs->RecordCount(), 1);
    rs->Filter(QStringLiteral("Subject = 'B'"));
    EXPECT_EQ(rs->RecordCount(), 0) << "text comparison is exact";
    rs->Filter(QStringLiteral("Subject = 'b'"));
    EXPECT_EQ(rs->RecordCount(), 1);
}

TEST_F(RecordsetFilter, SelectionMarksGiveExactlyTheChosenRows)
{
    mark(ids[1]);
    mark(ids[3]);
    rs->Filter(QStringLiteral("Tag = -1"));
    EXPECT_EQ(rs->RecordCount(), 2);
    EXPECT_EQ(column(*rs, QStringLiteral("Subject")), (QStringList{QStringLiteral("b"), QStringLiteral("d")}));
}

TEST_F(RecordsetFilter, UpdateKeepsTheFilterAndAnEditedRowStaysUntilItIsSetAgain)
{
    mark(ids[0]);
    mark(ids[2]);
    rs->Filter(QStringLiteral("Tag = -1"));
    rs->Fields(QStringLiteral("Tag")).setValue(Value(Int16(0)));
    rs->Update();
    EXPECT_EQ(rs->currentFilter(), QStringLiteral("Tag = -1"));
    EXPECT_EQ(rs->RecordCount(), 2) << "the unmarked row stays visible";
    EXPECT_EQ(rs->Fields(36).value(), Value("a"));
    rs->MoveNext();
    EXPECT_EQ(rs->Fields(36).value(), Value("c"));

    rs->Filter(QStringLiteral("Tag = -1"));
    EXPECT_EQ(rs->RecordCount(), 1);
    EXPECT_EQ(rs->Fields(36).value(), Value("c"));
}

TEST_F(RecordsetFilter, ResetOfTheMarksLeavesNoRowMarked)
{
    for (int id : ids) mark(id);
    // As at the start of a session: one Update per row, counted by RecordCount.
    rs->MoveFirst();
    const long n = rs->RecordCount();
    for (long i = 0; i < n; ++i) {
        rs->Fields(QStringLiteral("Tag")).setValue(Value(Int16(0)));
        rs->Update();
        rs->MoveNext();
    }
    EXPECT_TRUE(rs->EOF_());
    rs->Filter(QStringLiteral("Tag = -1"));
    EXPECT_EQ(rs->RecordCount(), 0);
    rs->Filter(QStringLiteral("Tag = 0"));
    EXPECT_EQ(rs->RecordCount(), 5);
}

TEST_F(RecordsetFilter, RequeryKeepsTheFilterOverTheNewKeys)
{
    mark(ids[4]);
    rs->Filter(QStringLiteral("Tag = -1"));
    auto other = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    other->AddNew();
    other->Fields(36).setValue(Value("f"));
    other->Fields(QStringLiteral("Tag")).setValue(Value(Int16(-1)));
    other->Update();
    EXPECT_EQ(rs->RecordCount(), 1);
    rs->Requery();
    EXPECT_EQ(column(*rs, QStringLiteral("Subject")), (QStringList{QStringLiteral("e"), QStringLiteral("f")}));
}

TEST_F(RecordsetFilter, BooleanAndTextKeyCriteriaOnTheLinkTables)
{
    addContact(1, QStringLiteral("c-1"), QStringLiteral("One"), QString(), true);
    addContact(2, QStringLiteral("c-2"), QStringLiteral("Two"), QString(), false);
    auto contacts = open(QStringLiteral("SELECT * FROM tblContacts"), link);
    contacts->Filter(QStringLiteral("Active = True"));
    EXPECT_EQ(column(*contacts, QStringLiteral("ContactName")), QStringList{QStringLiteral("One")});
    contacts->Filter(QStringLiteral("ContactID = 2"));
    EXPECT_EQ(contacts->Fields(1).value(), Value("c-2"));

    auto tasks = open(QStringLiteral("SELECT * FROM tblTasks"), link);
    tasks->AddNew();
    tasks->Fields(0).setValue(Value("t-1"));
    tasks->Fields(1).setValue(Value(77));
    tasks->Update();
    tasks->Filter(QStringLiteral("EntryID = 't-1'"));
    ASSERT_EQ(tasks->RecordCount(), 1);
    tasks->Delete();
    tasks->Filter(0L);
    EXPECT_EQ(tasks->RecordCount(), 0);
}

TEST_F(RecordsetFilter, MalformedCriteriaAreFailures)
{
    EXPECT_EQ(failureOf([&] { rs->Filter(QStringLiteral("Subject LIKE 'a%'")); }), 3001);
    EXPECT_EQ(failureOf([&] { rs->Filter(QStringLiteral("Tag = 'many'")); }), 3001);
    EXPECT_EQ(failureOf([&] { rs->Filter(QStringLiteral("Nothing = 1")); }), 3265);
    EXPECT_EQ(failureOf([&] { rs->Filter(2L); }), 3001);
    EXPECT_EQ(rs->RecordCount(), 5) << "a refused filter leaves the rows as they were";
}

} // namespace
} // namespace steplets::test
