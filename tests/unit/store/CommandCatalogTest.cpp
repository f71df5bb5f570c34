// Text commands without records, and the link provider string of the linked admin table.
#include "StoreFixture.h"

namespace steplets::test {
namespace {

class CommandCatalog : public StoreFixture {
protected:
    void execute(const QString& text)
    {
        auto cmd = store.CreateCommand();
        cmd->ActiveConnection(link);
        cmd->CommandText(text);
        cmd->CommandType(ado::adCmdText);
        cmd->Prepared(true);
        cmd->Execute(ado::adExecuteNoRecords);
    }

    QString linkedProvider()
    {
        auto cn = store.CreateConnection();
        cn->Open(storeFiles::linkConnectionString(dir.path()));
        auto rs = open(QStringLiteral("SELECT * FROM sysLinkedTables WHERE TableName = 'tblAdminOptions'"), cn);
        return rs->Fields(QStringLiteral("ProviderString")).value().textOrEmpty();
    }
};

TEST_F(CommandCatalog, InsertCommandRecordsATaskThatTheUndoRecordsetFinds)
{
    auto tasks = open(QStringLiteral("SELECT * FROM tblTasks"), link);
    execute(QStringLiteral("INSERT INTO tblTasks ") + QStringLiteral("(EntryID, TimeCardID) ")
            + QStringLiteral("VALUES ('t-42', 17)"));
    EXPECT_EQ(tasks->RecordCount(), 0) << "the keyset was taken before";
    auto undo = open(QStringLiteral("SELECT * FROM tblTasks"), link);
    undo->Filter(QStringLiteral("EntryID = 't-42'"));
    ASSERT_EQ(undo->RecordCount(), 1);
    EXPECT_EQ(undo->Fields(QStringLiteral("TimeCardID")).value(), Value(17));
}

TEST_F(CommandCatalog, BooleanWordsInCommandsAreStoredAsMinusOneAndZero)
{
    execute(QStringLiteral("INSERT INTO tblContacts (ContactID, ContactEntryID, ContactName, Active) VALUES (5, 'c-5', 'Five', True)"));
    execute(QStringLiteral("INSERT INTO tblContacts (ContactID, ContactEntryID, ContactName, Active) VALUES (6, 'c-6', 'Six', False)"));
    auto rs = open(QStringLiteral("SELECT * FROM tblContacts WHERE Active=True ORDER BY ContactName"), link);
    EXPECT_EQ(column(*rs, QStringLiteral("ContactName")), QStringList{QStringLiteral("Five")});
}

TEST_F(CommandCatalog, BadCommandIsAFailureNamingIt)
{
    try {
        execute(QStringLiteral("INSERT INTO tblTasks (EntryID) VALUE ('x')"));
        FAIL();
    } catch (const Failure& f) {
        EXPECT_EQ(f.number(), -2147217900);
        EXPECT_TRUE(f.description().contains(QStringLiteral("VALUE ('x')")));
    }
    EXPECT_EQ(failureOf([&] { execute(QStringLiteral("INSERT INTO tblGone (a) VALUES (1)")); }), -2147217865);
}

TEST_F(CommandCatalog, LinkProviderStringOfTheAdminTableIsWrittenAsItStands)
{
    auto cat = store.CreateCatalog();
    cat->ActiveConnection(link);
    auto table = cat->Tables(QStringLiteral("tblAdminOptions"));
    const QString provider = QStringLiteral(";DATABASE=\\\\server\\share\\Admin.mdb;PWD=x");
    table->Properties(QStringLiteral("Jet OLEDB:Link Provider String"))->setValue(Value(provider));
    EXPECT_EQ(linkedProvider(), provider);
    EXPECT_EQ(table->Properties(QStringLiteral("Jet OLEDB:Link Provider String"))->value(), Value(provider));
}

TEST_F(CommandCatalog, CatalogFailures)
{
    auto cat = store.CreateCatalog();
    cat->ActiveConnection(link);
    EXPECT_EQ(failureOf([&] { cat->Tables(QStringLiteral("tblMissing")); }), 3265);
    EXPECT_EQ(failureOf([&] { cat->Tables(QStringLiteral("tblAdminOptions"))->Properties(QStringLiteral("Colour")); }), 3265);
    auto plain = cat->Tables(QStringLiteral("tblTasks"));
    EXPECT_EQ(failureOf([&] { plain->Properties(QStringLiteral("Jet OLEDB:Link Provider String"))->setValue(Value("x")); }),
              -2147467259);
    auto unbound = store.CreateCatalog();
    EXPECT_EQ(failureOf([&] { unbound->Tables(QStringLiteral("tblAdminOptions")); }), 3704);
}

} // namespace
} // namespace steplets::test
