// Opening recordsets with the system's queries, the keyset, moves, and reading fields.
#include "StoreFixture.h"

namespace steplets::test {
namespace {

using RecordsetRead = StoreFixture;

TEST_F(RecordsetRead, EmptyTableIsAtBothEndsAndHasNoFirstRow)
{
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    EXPECT_TRUE(rs->BOF());
    EXPECT_TRUE(rs->EOF_());
    EXPECT_EQ(rs->RecordCount(), 0);
    EXPECT_EQ(failureOf([&] { rs->MoveFirst(); }), 3021);
    EXPECT_TRUE(rs->EOF_());
    EXPECT_EQ(failureOf([&] { rs->MoveNext(); }), 3021);
}

TEST_F(RecordsetRead, AFilterThatLeavesNothingHasNoFirstRowAndClearingItGivesItBack)
{
    addTemplates({QStringLiteral("a"), QStringLiteral("b")});
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    rs->Filter(QStringLiteral("Tag = -1"));
    EXPECT_EQ(failureOf([&] { rs->MoveFirst(); }), 3021);
    rs->Filter(0L);
    rs->MoveFirst();
    EXPECT_EQ(rs->Fields(QStringLiteral("Subject")).value(), Value("a"));
}

TEST_F(RecordsetRead, MovesWalkTheRowsInKeyOrder)
{
    addTemplates({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")});
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    EXPECT_FALSE(rs->BOF());
    EXPECT_EQ(rs->Fields(QStringLiteral("Subject")).value(), Value("a"));
    rs->Move(2);
    EXPECT_EQ(rs->Fields(36).value(), Value("c"));
    rs->Move(-1);
    EXPECT_EQ(rs->Fields(36).value(), Value("b"));
    rs->Move(10);
    EXPECT_TRUE(rs->EOF_());
    EXPECT_EQ(failureOf([&] { rs->Move(1); }), 3021);
    rs->MoveFirst();
    rs->Move(-1);
    EXPECT_TRUE(rs->BOF());
    EXPECT_FALSE(rs->EOF_());
    rs->MoveNext();
    EXPECT_EQ(rs->Fields(36).value(), Value("a"));
    // From EOF the system goes back by MoveFirst and a relative Move.
    rs->Move(10);
    rs->MoveFirst();
    rs->Move(3);
    EXPECT_EQ(rs->Fields(36).value(), Value("d"));
}

TEST_F(RecordsetRead, FieldAccessWithoutCurrentRowIsFailure3021)
{
    addTemplates({QStringLiteral("only")});
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    rs->MoveNext();
    ASSERT_TRUE(rs->EOF_());
    try {
        rs->Fields(QStringLiteral("Subject")).value();
        FAIL() << "reading at EOF must fail";
    } catch (const Failure& f) {
        EXPECT_EQ(f.number(), 3021);
        EXPECT_EQ(f.description(), QStringLiteral("Either BOF or EOF is True, or the current record has been deleted. "
                                                  "Requested operation requires a current record."));
    }
    EXPECT_EQ(failureOf([&] { rs->Fields(56).setValue(Value(0)); }), 3021);
}

TEST_F(RecordsetRead, UnknownFieldIsFailure3265)
{
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    EXPECT_EQ(failureOf([&] { rs->Fields(QStringLiteral("NoSuchColumn")); }), 3265);
    EXPECT_EQ(failureOf([&] { rs->Fields(57); }), 3265);
    EXPECT_EQ(rs->fieldIndex(QStringLiteral("subject")), 36) << "names are found whatever their case";
}

TEST_F(RecordsetRead, ColumnsNotWrittenReadAsNullAndTagDefaultsToZero)
{
    addTemplates({QStringLiteral("bare")});
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    for (int pos : {1, 3, 6, 8, 34, 45, 54, 55}) EXPECT_TRUE(rs->Fields(pos).value().isNull()) << "position " << pos;
    EXPECT_EQ(rs->Fields(QStringLiteral("Tag")).value(), Value(Int16(0)));
    EXPECT_EQ(rs->Fields(0).value().type(), Value::Type::Int32);
}

TEST_F(RecordsetRead, KeysetSeesOtherRecordsetsRowsOnlyAfterRequery)
{
    addTemplates({QStringLiteral("first")});
    auto shared = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    auto other = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    other->AddNew();
    other->Fields(36).setValue(Value("second"));
    other->Update();

    EXPECT_EQ(shared->RecordCount(), 1);
    EXPECT_EQ(column(*shared, QStringLiteral("Subject")), QStringList{QStringLiteral("first")});
    shared->Requery();
    EXPECT_EQ(shared->RecordCount(), 2);
    EXPECT_EQ(column(*shared, QStringLiteral("Subject")), (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
}

TEST_F(RecordsetRead, ChangesAndDeletionsByAnotherRecordsetShowAtOnce)
{
    addTemplates({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    auto shared = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    auto other = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    other->Fields(36).setValue(Value("A"));
    other->Update();
    EXPECT_EQ(shared->Fields(36).value(), Value("A"));

    other->MoveNext();
    other->Delete();
    EXPECT_EQ(shared->RecordCount(), 2);
    EXPECT_EQ(column(*shared, QStringLiteral("Subject")), (QStringList{QStringLiteral("A"), QStringLiteral("c")}));
}

TEST_F(RecordsetRead, ContactQueryKeepsActiveRowsSortedByTheChosenColumn)
{
    addContact(1, QStringLiteral("c-1"), QStringLiteral("Zoe Adams"), QStringLiteral("AAA"), true);
    addContact(2, QStringLiteral("c-2"), QStringLiteral("adam Young"), QStringLiteral("ZZZ"), true);
    addContact(3, QStringLiteral("c-3"), QStringLiteral("Inactive Ian"), QStringLiteral("MMM"), false);
    addContact(4, QStringLiteral("c-4"), QStringLiteral("Bea Miles"), QStringLiteral("BBB"), true);

    auto byName = open(QStringLiteral("SELECT * FROM tblContacts WHERE Active=True ORDER BY ContactName"), link);
    EXPECT_EQ(column(*byName, QStringLiteral("ContactName")),
              (QStringList{QStringLiteral("adam Young"), QStringLiteral("Bea Miles"), QStringLiteral("Zoe Adams")}));
    auto byAccount = open(QStringLiteral("SELECT * FROM tblContacts WHERE Active=True ORDER BY ContactAccount"), link);
    EXPECT_EQ(column(*byAccount, QStringLiteral("ContactName")),
              (QStringList{QStringLiteral("Zoe Adams"), QStringLiteral("Bea Miles"), QStringLiteral("adam Young")}));
    EXPECT_EQ(byAccount->fieldName(1), QStringLiteral("ContactEntryID"));
}

TEST_F(RecordsetRead, SingleColumnQueryReadsTheEntryIdAsItsFirstField)
{
    addContact(7, QStringLiteral("c-seven"), QStringLiteral("Seven"), QString(), true);
    addContact(8, QStringLiteral("c-eight"), QStringLiteral("Eight"), QString(), true);
    auto rs = open(QStringLiteral("SELECT ContactEntryID FROM tblContacts WHERE ContactID = 8"), link,
                   ado::adOpenStatic, ado::adLockReadOnly);
    EXPECT_EQ(rs->FieldCount(), 1);
    ASSERT_EQ(rs->RecordCount(), 1);
    EXPECT_EQ(rs->Fields(0).value(), Value("c-eight"));
    EXPECT_EQ(failureOf([&] { rs->Fields(0).setValue(Value("x")); }), 3251) << "a read-only recordset takes no writes";
    EXPECT_EQ(failureOf([&] { rs->AddNew(); }), 3251);
}

} // namespace
} // namespace steplets::test
