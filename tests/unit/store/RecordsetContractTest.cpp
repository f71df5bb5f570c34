// What every store backend owes the windows: the keyset, moves, filters, edits, deletes, the
// values of each column type, commands, the catalog, and the failures with their numbers.
#include "RecordsetContract.h"

namespace steplets::test {

namespace {
const QString kDelete3021 = QStringLiteral("Either BOF or EOF is True, or the current record has been deleted. "
                                           "Requested operation requires a current record.");
}

TEST_P(RecordsetContract, EmptyTableIsAtBothEndsAndWithoutARowEveryMoveAndFieldIs3021)
{
    auto rs = templates();
    EXPECT_TRUE(rs->BOF() && rs->EOF_());
    EXPECT_EQ(rs->RecordCount(), 0);
    const std::function<void()> acts[] = {[&] { rs->MoveFirst(); }, [&] { rs->MoveNext(); }, [&] { rs->Update(); },
                                          [&] { rs->Delete(); }, [&] { rs->Fields(56).setValue(Value(0)); }};
    for (const auto& act : acts) EXPECT_EQ(failureOf(act), 3021);
    EXPECT_EQ(failure([&] { rs->Fields(36).value(); }).description(), kDelete3021);
}

TEST_P(RecordsetContract, MovesWalkTheRowsInKeyOrderAndStopAtBothEnds)
{
    addTemplates({"a", "b", "c", "d"});
    auto rs = templates();
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
    EXPECT_TRUE(rs->BOF() && !rs->EOF_());
    rs->MoveNext();
    EXPECT_EQ(rs->Fields(36).value(), Value("a"));
}

TEST_P(RecordsetContract, ColumnsStandAtTheirPositionsAndUnknownOnesAre3265)
{
    addTemplates({"bare"});
    auto rs = templates();
    ASSERT_EQ(rs->FieldCount(), 57);
    EXPECT_EQ(rs->fieldIndex(QStringLiteral("subject")), 36) << "names are found whatever their case";
    EXPECT_EQ(failureOf([&] { rs->Fields(QStringLiteral("NoSuchColumn")); }), 3265);
    EXPECT_EQ(failureOf([&] { rs->Fields(57); }), 3265);
    // Columns never written read as Null (Tag starts at 0: see the filters).
    for (int pos : {1, 3, 6, 34}) EXPECT_TRUE(rs->Fields(pos).value().isNull()) << pos;
}

TEST_P(RecordsetContract, KeysetTakesOtherRowsOnlyAtRequeryButShowsTheirChangesAndDeletionsAtOnce)
{
    addTemplates({"a", "b", "c"});
    auto shared = templates();
    auto other = templates();
    other->Fields(36).setValue(Value("A"));
    other->Update();
    EXPECT_EQ(shared->Fields(36).value(), Value("A"));
    other->MoveNext();
    other->Delete();
    addRow(*other, {{36, Value("d")}});
    EXPECT_EQ(column(*shared), (QStringList{"A", "c"}));
    shared->Requery();
    EXPECT_EQ(column(*shared), (QStringList{"A", "c", "d"}));
}

TEST_P(RecordsetContract, QueriesSortAndFiltersPickActiveContactsAndASingleColumnReadOnlyRecordsetTakesNoWrites)
{
    addContact(1, "Zoe Adams", "AAA", true);
    addContact(2, "adam Young", "ZZZ", true);
    addContact(3, "Inactive Ian", "MMM", false);
    addContact(4, "Bea Miles", "BBB", true);
    EXPECT_EQ(column(*open(QStringLiteral("SELECT * FROM tblContacts WHERE Active=True ORDER BY ContactName"), link), "ContactName"),
              (QStringList{"adam Young", "Bea Miles", "Zoe Adams"}));
    auto contacts = open(QStringLiteral("SELECT * FROM tblContacts"), link);
    contacts->Filter(QStringLiteral("Active = True"));
    EXPECT_EQ(column(*contacts, "ContactName"), (QStringList{"Zoe Adams", "adam Young", "Bea Miles"})) << "a filter on a truth value";

    auto rs = open(QStringLiteral("SELECT ContactEntryID FROM tblContacts WHERE ContactID = 4"), link, ado::adOpenStatic, ado::adLockReadOnly);
    EXPECT_EQ(rs->FieldCount(), 1);
    ASSERT_EQ(rs->RecordCount(), 1);
    EXPECT_EQ(rs->Fields(0).value(), Value("c-4"));
    EXPECT_EQ(failureOf([&] { rs->Fields(0).setValue(Value("x")); }), 3251);
    EXPECT_EQ(failureOf([&] { rs->AddNew(); }), 3251);
}

// Each column type converts what the windows write into it, and refuses what it cannot hold.
TEST_P(RecordsetContract, ValuesAreConvertedToTheColumnsTypeOrRefused)
{
    struct Write { int pos; Value written; Value read; };
    const Date due = Date::fromParts(2026, 3, 17, 15, 30, 0);
    const QString longText = QString(5000, QLatin1Char('x')) + QStringLiteral(" – ünïcode");
    const Write writes[] = {
        {6, Value(-1), Value(true)},                 // Complete from a number
        {54, Value("True"), Value(true)},            // PromptForAssignee as the template save writes it
        {41, Value(2.5), Value(2)},                  // whole numbers round halves to even
        {40, Value(-1.5), Value(-2)},
        {9, Value("12"), Value(12)},
        {56, Value(Int16(-1)), Value(Int16(-1))},    // Tag
        {8, Value(due), Value(due)},
        {18, Value(0), Value(Date())},               // the zero date, as a non-recurring save writes it
        {3, Value(longText), Value(longText)},
        {2, Value(42), Value("42")},
    };
    addTemplates({"t"});
    auto rs = templates();
    for (const Write& w : writes) rs->Fields(w.pos).setValue(w.written);
    rs->Update();
    auto fresh = templates();
    for (const Write& w : writes) EXPECT_EQ(fresh->Fields(w.pos).value(), w.read) << "position " << w.pos;

    const std::tuple<int, Value, long> refused[] = {
        {54, Value("maybe"), 13}, {40, Value(3.0e9), 6}, {56, Value(40000), 6}, {0, Value(9), 3001},
    };
    for (const auto& r : refused) {
        const int pos = std::get<0>(r);
        EXPECT_EQ(failureOf([&] { fresh->Fields(pos).setValue(std::get<1>(r)); }), std::get<2>(r)) << pos;
    }
}

TEST_P(RecordsetContract, WritesWaitForUpdateOrAMoveAndAreThenSeenByAnotherConnection)
{
    addTemplates({"before", "b"});
    auto rs = templates();
    rs->Fields(36).setValue(Value("after"));
    EXPECT_EQ(rs->Fields(36).value(), Value("after")) << "the edited value reads back at once";
    EXPECT_EQ(templates()->Fields(36).value(), Value("before")) << "not stored before Update";
    rs->Update();
    auto cn = store->CreateConnection();
    cn->Open(storeFiles::localConnectionString(dir.path()));
    EXPECT_EQ(open(QStringLiteral("SELECT * FROM tblSteplets"), cn)->Fields(36).value(), Value("after"));

    rs->Fields(36).setValue(Value("A"));
    rs->MoveNext();
    EXPECT_EQ(templates()->Fields(36).value(), Value("A")) << "a move stores the pending edit";
}

// An edit or a new row that a failed routine never updated is gone after Requery or Filter, so
// a refill of the lists cannot commit half a row; Delete during AddNew drops the new row.
TEST_P(RecordsetContract, ARereadOrDeleteDropsAPendingEditAndANewRow)
{
    addTemplates({"a", "b"});
    auto rs = templates();
    const std::pair<const char*, std::function<void(Recordset&)>> reads[] = {
        {"Requery", [](Recordset& r) { r.Requery(); }},
        {"Filter", [](Recordset& r) { r.Filter(QStringLiteral("Subject = 'b'")); }},
        {"Filter 0", [](Recordset& r) { r.Filter(0L); }},
        {"Delete", [](Recordset& r) { r.Delete(); r.Requery(); }},
    };
    for (const auto& [name, read] : reads) {
        if (std::string(name) != "Delete") {
            rs->MoveFirst();
            rs->Fields(36).setValue(Value("half"));
            read(*rs);
        }
        rs->AddNew();
        rs->Fields(36).setValue(Value("never"));
        read(*rs);
        rs->Filter(0L);
        EXPECT_EQ(column(*rs), (QStringList{"a", "b"})) << name;
    }
}

TEST_P(RecordsetContract, NewRowsAppearAtOnceWithKeysThatNeverRepeat)
{
    auto rs = open(QStringLiteral("SELECT * FROM tblTaskGroups"), local);
    for (const char* name : {"Group one", "Group two"}) addRow(*rs, {{1, Value(name)}});
    EXPECT_EQ(rs->RecordCount(), 2);
    EXPECT_EQ(rs->Fields(QStringLiteral("ID")).value(), Value(2));
    EXPECT_EQ(rs->Fields(2).value(), Value(false)) << "group options start out False";
    EXPECT_TRUE(rs->Fields(QStringLiteral("Prompt")).value().isNull());
    rs->Delete();
    addRow(*rs, {{1, Value("Group three")}});
    EXPECT_EQ(rs->Fields(0).value(), Value(3)) << "one more than the highest ever given";
    EXPECT_EQ(column(*rs, "GroupName"), (QStringList{"Group one", "Group three"}));
}

// The two delete loops of the windows both empty a filtered set: Delete n times, and
// Delete then MoveNext n times; the deleted row is no current record until the cursor moves.
TEST_P(RecordsetContract, BothDeleteLoopsEmptyAFilteredSet)
{
    addAssignments({{1, 10}, {2, 10}, {1, 11}, {1, 12}, {3, 12}});
    auto rs = open(QStringLiteral("SELECT * FROM tblGroupAssignments"), local);
    rs->Filter(QStringLiteral("GroupID = 1"));
    ASSERT_EQ(rs->RecordCount(), 3);
    rs->Delete();
    EXPECT_EQ(failureOf([&] { rs->Fields(1).value(); }), 3021);
    EXPECT_FALSE(rs->EOF_());
    rs->Delete();
    rs->Delete();
    EXPECT_TRUE(rs->BOF() && rs->EOF_());

    rs->Filter(0L);
    ASSERT_EQ(rs->RecordCount(), 2);
    for (long i = 0, n = rs->RecordCount(); i < n; ++i) {
        rs->Delete();
        rs->MoveNext();
    }
    EXPECT_TRUE(rs->EOF_());
    EXPECT_EQ(rs->RecordCount(), 0);
}

TEST_P(RecordsetContract, FiltersNarrowCountMovesAndCurrentRowUntilCleared)
{
    const std::vector<int> ids = addTemplates({"a", "b", "O'Brien", "d", "e"});
    auto rs = templates();
    rs->Move(3);
    rs->Filter(QStringLiteral("ID = %1").arg(ids[1]));
    EXPECT_EQ(rs->RecordCount(), 1);
    EXPECT_EQ(rs->Fields(36).value(), Value("b")) << "the current row is the first match";
    rs->MoveNext();
    EXPECT_TRUE(rs->EOF_());
    const std::pair<const char*, long> counts[] = {{"Subject = 'O''Brien'", 1}, {"Subject = 'B'", 0}, {"Tag = 0", 5}, {"ID = 999", 0}};
    for (const auto& [criteria, n] : counts) {
        rs->Filter(QString::fromUtf8(criteria));
        EXPECT_EQ(rs->RecordCount(), n) << criteria;
    }
    EXPECT_TRUE(rs->BOF() && rs->EOF_());
    EXPECT_EQ(failureOf([&] { rs->MoveFirst(); }), 3021);
    rs->Filter(0L);
    EXPECT_EQ(rs->RecordCount(), 5);
    EXPECT_EQ(rs->Fields(36).value(), Value("a"));
}

// The selection marks: set through a filter by ID, read back by "Tag = -1"; a row unmarked
// under the filter stays until the filter is set again; Requery keeps the filter.
TEST_P(RecordsetContract, SelectionMarksThroughFilters)
{
    const std::vector<int> ids = addTemplates({"a", "b", "c", "d"});
    auto rs = templates();
    for (int i : {0, 2}) {
        rs->Filter(QStringLiteral("ID = %1").arg(ids[i]));
        rs->Fields(QStringLiteral("Tag")).setValue(Value(Int16(-1)));
        rs->Update();
    }
    rs->Filter(QStringLiteral("Tag = -1"));
    EXPECT_EQ(column(*rs), (QStringList{"a", "c"}));
    rs->MoveFirst();
    rs->Fields(QStringLiteral("Tag")).setValue(Value(Int16(0)));
    rs->Update();
    EXPECT_EQ(rs->currentFilter(), QStringLiteral("Tag = -1"));
    EXPECT_EQ(column(*rs), (QStringList{"a", "c"})) << "the unmarked row stays visible";

    auto other = templates();
    addRow(*other, {{36, Value("f")}, {56, Value(Int16(-1))}});
    rs->Requery();
    EXPECT_EQ(column(*rs), (QStringList{"c", "f"}));
}

TEST_P(RecordsetContract, RefusedFiltersAndQueriesAreFailuresNamingWhatWasRefused)
{
    addTemplates({"a"});
    auto rs = templates();
    const std::pair<const char*, long> filters[] = {
        {"Subject LIKE 'a%'", 3001}, {"Tag = 'many'", 3001}, {"Nothing = 1", 3265}};
    for (const auto& f : filters) EXPECT_EQ(failureOf([&] { rs->Filter(QString::fromUtf8(f.first)); }), f.second) << f.first;
    EXPECT_EQ(failureOf([&] { rs->Filter(2L); }), 3001);
    EXPECT_EQ(rs->RecordCount(), 1) << "a refused filter leaves the rows as they were";

    const std::tuple<const char*, long, const char*> queries[] = {
        {"SELECT * FROM tblNowhere", -2147217865, "'tblNowhere'"},
        {"SELECT Nobody FROM tblContacts", -2147217904, ""},
        {"DELETE FROM tblTasks", -2147217900, "DELETE FROM tblTasks"},
        {"SELECT * FROM tblTasks WHERE EntryID ==== 'x'", -2147217900, "===="},
        {"SELECT * FROM tblContacts ORDER BY 1 + 2", -2147217900, "1 + 2"},
    };
    for (const auto& [query, number, named] : queries) {
        auto q = store->CreateRecordset();
        const QString text = QString::fromUtf8(query);   // clang before 16 captures no structured binding
        const Failure f = failure([&] { q->Open(text, link, 1, 3, 1); });
        EXPECT_EQ(f.number(), number) << query;
        EXPECT_TRUE(f.description().contains(QString::fromUtf8(named))) << f.description().toStdString();
        EXPECT_EQ(q->State(), ado::adStateClosed);
    }
}

TEST_P(RecordsetContract, ConnectionsFailNamingTheMissingFileAndRefuseUseWhenClosed)
{
    TempDir empty;
    auto cn = store->CreateConnection();
    const Failure missing = failure([&] { cn->Open(storeFiles::localConnectionString(empty.path())); });
    EXPECT_EQ(missing.number(), -2147467259);
    EXPECT_TRUE(missing.description().contains(empty.file(QStringLiteral("OVLocal.db")) + QStringLiteral(" was not found")))
        << missing.description().toStdString();
    EXPECT_EQ(cn->State(), ado::adStateClosed);

    auto rs = open(QStringLiteral("SELECT * FROM tblTasks"), link);
    EXPECT_EQ(failureOf([&] { link->Open(storeFiles::linkConnectionString(dir.path())); }), 3705);
    link->Close();
    EXPECT_EQ(failureOf([&] { rs->RecordCount(); }), 3704);
    EXPECT_EQ(failureOf([&] { open(QStringLiteral("SELECT * FROM tblTasks"), link); }), 3704);
    EXPECT_EQ(failureOf([&] { link->Close(); }), 3704);
}

TEST_P(RecordsetContract, CommandsInsertRowsThatLaterRecordsetsFind)
{
    const auto execute = [&](const QString& text) {
        auto cmd = store->CreateCommand();
        cmd->ActiveConnection(link);
        cmd->CommandText(text);
        cmd->CommandType(ado::adCmdText);
        cmd->Prepared(true);
        cmd->Execute(ado::adExecuteNoRecords);
    };
    auto before = open(QStringLiteral("SELECT * FROM tblTasks"), link);
    execute(QStringLiteral("INSERT INTO tblTasks (EntryID, TimeCardID) VALUES ('t-42', 17)"));
    EXPECT_EQ(before->RecordCount(), 0) << "the keyset was taken before";
    auto undo = open(QStringLiteral("SELECT * FROM tblTasks"), link);
    undo->Filter(QStringLiteral("EntryID = 't-42'"));
    ASSERT_EQ(undo->RecordCount(), 1);
    EXPECT_EQ(undo->Fields(QStringLiteral("TimeCardID")).value(), Value(17));

    const Failure bad = failure([&] { execute(QStringLiteral("INSERT INTO tblTasks (EntryID) VALUE ('x')")); });
    EXPECT_EQ(bad.number(), -2147217900);
    EXPECT_TRUE(bad.description().contains(QStringLiteral("VALUE ('x')")));
    EXPECT_EQ(failureOf([&] { execute(QStringLiteral("INSERT INTO tblGone (a) VALUES (1)")); }), -2147217865);
}

TEST_P(RecordsetContract, TheCatalogWritesTheLinkProviderStringOfTheAdminTableAsItStands)
{
    auto cat = store->CreateCatalog();
    EXPECT_EQ(failureOf([&] { cat->Tables(QStringLiteral("tblAdminOptions")); }), 3704);
    cat->ActiveConnection(link);
    const QString key = QStringLiteral("Jet OLEDB:Link Provider String");
    const QString provider = QStringLiteral(";DATABASE=\\\\server\\share\\Admin.mdb;PWD=x");
    cat->Tables(QStringLiteral("tblAdminOptions"))->Properties(key)->setValue(Value(provider));
    auto cn = store->CreateConnection();
    cn->Open(storeFiles::linkConnectionString(dir.path()));
    EXPECT_EQ(open(QStringLiteral("SELECT * FROM sysLinkedTables WHERE TableName = 'tblAdminOptions'"), cn)
                  ->Fields(QStringLiteral("ProviderString")).value(), Value(provider));

    EXPECT_EQ(failureOf([&] { cat->Tables(QStringLiteral("tblMissing")); }), 3265);
    EXPECT_EQ(failureOf([&] { cat->Tables(QStringLiteral("tblAdminOptions"))->Properties(QStringLiteral("Colour")); }), 3265);
    EXPECT_EQ(failureOf([&] { cat->Tables(QStringLiteral("tblTasks"))->Properties(key)->setValue(Value("x")); }), -2147467259);
}

} // namespace steplets::test
