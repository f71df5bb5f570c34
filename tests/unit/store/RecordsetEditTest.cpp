// Writing fields, AddNew, Update and Delete: conversions to the column's type, durability,
// and the two delete loops of the system.
#include "StoreFixture.h"

namespace steplets::test {
namespace {

using RecordsetEdit = StoreFixture;

TEST_F(RecordsetEdit, BooleanColumnsStoreMinusOneAndZeroAndReadBackAsBooleans)
{
    addTemplates({QStringLiteral("t")});
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    rs->Fields(6).setValue(Value(-1));                       // Complete from a number
    rs->Fields(10).setValue(Value(0));                       // IsRecurring
    rs->Fields(54).setValue(Value("True"));                  // PromptForAssignee as SaveTemplateToDB writes it
    rs->Fields(37).setValue(Value(1));                       // TeamTask as frmNewTask writes it
    rs->Update();

    auto fresh = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    EXPECT_EQ(fresh->Fields(6).value(), Value(true));
    EXPECT_EQ(fresh->Fields(10).value(), Value(false));
    EXPECT_EQ(fresh->Fields(54).value().toText(), QStringLiteral("True"));
    EXPECT_TRUE(fresh->Fields(37).value().toBool());
    EXPECT_EQ(fresh->Fields(6).value().toLong(), -1);

    fresh->Fields(54).setValue(Value("False"));
    fresh->Update();
    EXPECT_EQ(fresh->Fields(54).value().toText(), QStringLiteral("False"));
    EXPECT_EQ(failureOf([&] { fresh->Fields(54).setValue(Value("maybe")); }), 13);
}

TEST_F(RecordsetEdit, WholeNumberColumnsRoundHalvesToEvenAndCheckTheirRange)
{
    addTemplates({QStringLiteral("t")});
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    rs->Fields(41).setValue(Value(2.5));                     // PatternEndOffset
    rs->Fields(42).setValue(Value(3.5));                     // PatternStartOffset
    rs->Fields(40).setValue(Value(-1.5));
    rs->Fields(9).setValue(Value("12"));
    rs->Update();
    auto fresh = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    EXPECT_EQ(fresh->Fields(41).value(), Value(2));
    EXPECT_EQ(fresh->Fields(42).value(), Value(4));
    EXPECT_EQ(fresh->Fields(40).value(), Value(-2));
    EXPECT_EQ(fresh->Fields(9).value(), Value(12));
    EXPECT_EQ(failureOf([&] { fresh->Fields(40).setValue(Value(3.0e9)); }), 6);
    EXPECT_EQ(failureOf([&] { fresh->Fields(40).setValue(Value("soon")); }), 13);
}

TEST_F(RecordsetEdit, TagIsSixteenBit)
{
    addTemplates({QStringLiteral("t")});
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    rs->Fields(QStringLiteral("Tag")).setValue(Value(Int16(-1)));
    rs->Update();
    EXPECT_EQ(rs->Fields(QStringLiteral("Tag")).value(), Value(Int16(-1)));
    EXPECT_EQ(rs->Fields(QStringLiteral("DateType")).value(), Value());
    EXPECT_EQ(failureOf([&] { rs->Fields(QStringLiteral("Tag")).setValue(Value(40000)); }), 6);
}

TEST_F(RecordsetEdit, DatesAndTextsKeepTheirValues)
{
    addTemplates({QStringLiteral("t")});
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    const Date due = Date::fromParts(2026, 3, 17, 15, 30, 0);
    rs->Fields(8).setValue(Value(due));
    rs->Fields(18).setValue(Value(0));                       // the zero date, as a non-recurring save writes it
    rs->Fields(3).setValue(Value(QString(5000, QLatin1Char('x')) + QStringLiteral(" – ünïcode")));
    rs->Fields(2).setValue(Value(42));
    rs->Update();
    auto fresh = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    EXPECT_EQ(fresh->Fields(8).value(), Value(due));
    EXPECT_EQ(fresh->Fields(18).value(), Value(Date()));
    EXPECT_TRUE(fresh->Fields(3).value().toText().endsWith(QStringLiteral(" – ünïcode")));
    EXPECT_EQ(fresh->Fields(2).value(), Value("42"));
}

TEST_F(RecordsetEdit, WritesAreBufferedUntilUpdateAndDurableAfterIt)
{
    addTemplates({QStringLiteral("before")});
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    rs->Fields(36).setValue(Value("after"));
    EXPECT_EQ(rs->Fields(36).value(), Value("after")) << "the edited value reads back at once";
    auto other = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    EXPECT_EQ(other->Fields(36).value(), Value("before")) << "not stored before Update";
    rs->Update();

    // A second program's connection sees the row as soon as Update has returned.
    auto cn = store.CreateConnection();
    cn->Open(storeFiles::localConnectionString(dir.path()));
    auto seen = open(QStringLiteral("SELECT * FROM tblSteplets"), cn);
    EXPECT_EQ(seen->Fields(36).value(), Value("after"));
}

TEST_F(RecordsetEdit, MovingOnStoresAPendingEditAReadAgainDropsIt)
{
    addTemplates({QStringLiteral("a"), QStringLiteral("b")});
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    rs->Fields(36).setValue(Value("A"));
    rs->MoveNext();
    auto other = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    EXPECT_EQ(other->Fields(36).value(), Value("A"));

    // An edit or a new row that a failed routine never updated is gone after Requery or Filter,
    // so a refill of the lists cannot commit half a row.
    const std::pair<const char*, std::function<void(Recordset&)>> reads[] = {
        {"Requery", [](Recordset& r) { r.Requery(); }},
        {"Filter", [](Recordset& r) { r.Filter(QStringLiteral("Subject = 'b'")); }},
        {"Filter 0", [](Recordset& r) { r.Filter(0L); }},
    };
    for (const auto& [name, read] : reads) {
        rs->MoveFirst();
        rs->Fields(36).setValue(Value("half"));
        read(*rs);
        rs->AddNew();
        rs->Fields(36).setValue(Value("never"));
        read(*rs);
        rs->Filter(0L);
        EXPECT_EQ(column(*rs, QStringLiteral("Subject")), (QStringList{QStringLiteral("A"), QStringLiteral("b")})) << name;
    }
}

TEST_F(RecordsetEdit, AddNewRowsAppearAtOnceWithIdsThatNeverRepeat)
{
    auto rs = open(QStringLiteral("SELECT * FROM tblTaskGroups"), local);
    rs->AddNew();
    rs->Fields(1).setValue(Value("Group one"));
    rs->Update();
    EXPECT_EQ(rs->RecordCount(), 1);
    EXPECT_EQ(rs->Fields(QStringLiteral("ID")).value(), Value(1));
    EXPECT_EQ(rs->Fields(2).value(), Value(false)) << "group options start out False";
    EXPECT_TRUE(rs->Fields(QStringLiteral("Prompt")).value().isNull());

    rs->AddNew();
    rs->Fields(1).setValue(Value("Group two"));
    rs->Update();
    EXPECT_EQ(rs->Fields(0).value(), Value(2));
    rs->Delete();
    rs->AddNew();
    rs->Fields(1).setValue(Value("Group three"));
    rs->Update();
    EXPECT_EQ(rs->Fields(0).value(), Value(3)) << "one more than the highest ever given";
    EXPECT_EQ(column(*rs, QStringLiteral("GroupName")), (QStringList{QStringLiteral("Group one"), QStringLiteral("Group three")}));
    rs->MoveFirst();
    EXPECT_EQ(failureOf([&] { rs->Fields(0).setValue(Value(9)); }), 3001) << "the key is assigned by the store";
}

TEST_F(RecordsetEdit, UpdateWithoutCurrentRowIsFailure3021)
{
    auto rs = open(QStringLiteral("SELECT * FROM tblTaskGroups"), local);
    EXPECT_EQ(failureOf([&] { rs->Update(); }), 3021);
    EXPECT_EQ(failureOf([&] { rs->Delete(); }), 3021);
}

TEST_F(RecordsetEdit, DeleteWithoutMovingRemovesEveryRowOfAFilteredSet)
{
    addAssignments({{1, 10}, {2, 10}, {1, 11}, {1, 12}, {3, 12}});
    auto rs = open(QStringLiteral("SELECT * FROM tblGroupAssignments"), local);
    rs->Filter(QStringLiteral("GroupID = 1"));
    const long n = rs->RecordCount();
    ASSERT_EQ(n, 3);
    for (long i = 0; i < n; ++i) rs->Delete();
    EXPECT_EQ(rs->RecordCount(), 0);
    rs->Filter(0L);
    EXPECT_EQ(column(*rs, QStringLiteral("GroupID")), (QStringList{QStringLiteral("2"), QStringLiteral("3")}));
}

TEST_F(RecordsetEdit, DeleteThenMoveNextRemovesEveryRowOfAFilteredSet)
{
    addAssignments({{4, 10}, {5, 10}, {4, 11}, {4, 12}, {4, 13}});
    auto rs = open(QStringLiteral("SELECT * FROM tblGroupAssignments"), local);
    rs->Filter(QStringLiteral("GroupID = 4"));
    const long n = rs->RecordCount();
    ASSERT_EQ(n, 4);
    rs->MoveFirst();
    for (long i = 0; i < n; ++i) {
        if (rs->Fields(0).value().toLong() == 4) rs->Delete();
        rs->MoveNext();
    }
    EXPECT_TRUE(rs->EOF_());
    rs->Filter(0L);
    EXPECT_EQ(column(*rs, QStringLiteral("TaskID")), QStringList{QStringLiteral("10")});
    // Then the group's rows are written anew, as a click in the group's list does.
    rs->AddNew();
    rs->Fields(0).setValue(Value(4));
    rs->Fields(1).setValue(Value(11));
    rs->Update();
    rs->Filter(QStringLiteral("GroupID = 4"));
    EXPECT_EQ(rs->RecordCount(), 1);
}

TEST_F(RecordsetEdit, DeletedRowIsNoCurrentRecordUntilTheCursorMoves)
{
    addTemplates({QStringLiteral("a"), QStringLiteral("b")});
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    rs->Delete();
    EXPECT_EQ(failureOf([&] { rs->Fields(36).value(); }), 3021);
    EXPECT_FALSE(rs->EOF_());
    rs->MoveNext();
    EXPECT_EQ(rs->Fields(36).value(), Value("b"));
    rs->Delete();
    EXPECT_TRUE(rs->BOF() && rs->EOF_());
    EXPECT_EQ(failureOf([&] { rs->Delete(); }), 3021);
}

TEST_F(RecordsetEdit, DeleteDuringAddNewDropsTheNewRow)
{
    addTemplates({QStringLiteral("a")});
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    rs->AddNew();
    rs->Fields(36).setValue(Value("never"));
    rs->Delete();
    rs->Requery();
    EXPECT_EQ(column(*rs, QStringLiteral("Subject")), QStringList{QStringLiteral("a")});
}

} // namespace
} // namespace steplets::test
