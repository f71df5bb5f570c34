// What goes wrong, with a number and a description a person can act on.
#include "StoreFixture.h"
#include "backends/sqlcipher/StoreData.h"
#include <QFile>
#include <QJsonDocument>

namespace steplets::test {
namespace {

class StoreFailure : public StoreFixture {
protected:
    Failure openFailure(const QString& connectionString)
    {
        auto cn = store.CreateConnection();
        try {
            cn->Open(connectionString);
        } catch (const Failure& f) {
            EXPECT_EQ(cn->State(), ado::adStateClosed);
            return f;
        }
        ADD_FAILURE() << "the open should have failed";
        return Failure(0, {});
    }
};

TEST_F(StoreFailure, MissingFileNamesTheFile)
{
    TempDir empty;
    const Failure f = openFailure(storeFiles::localConnectionString(empty.path()));
    EXPECT_EQ(f.number(), -2147467259);
    EXPECT_TRUE(f.description().contains(empty.file(QStringLiteral("OVLocal.db")) + QStringLiteral(" was not found")))
        << f.description().toStdString();
}

TEST_F(StoreFailure, WrongPasswordIsNotAValidPassword)
{
    // The local file opened with the link database's password.
    const QString wrong = storeFiles::localConnectionString(dir.path())
                              .replace(QStringLiteral("k2Rv9PzQ4dTm"), QStringLiteral("p3w(8f!{7mhN4=XqYjRs"));
    const Failure f = openFailure(wrong);
    EXPECT_EQ(f.number(), -2147217843);
    EXPECT_TRUE(f.description().contains(QStringLiteral("OVLocal.db"))) << f.description().toStdString();
}

TEST_F(StoreFailure, FileThatIsNoDatabase)
{
    TempDir other;
    QFile junk(other.file(QStringLiteral("OVLink.db")));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(8192, 'j'));
    junk.close();
    EXPECT_EQ(openFailure(storeFiles::linkConnectionString(other.path())).number(), -2147217843);
}

TEST_F(StoreFailure, MissingTableAndUnknownColumn)
{
    auto rs = store.CreateRecordset();
    try {
        rs->Open(QStringLiteral("SELECT * FROM tblNowhere"), local, 1, 3, 1);
        FAIL();
    } catch (const Failure& f) {
        EXPECT_EQ(f.number(), -2147217865);
        EXPECT_TRUE(f.description().contains(QStringLiteral("'tblNowhere'")));
    }
    EXPECT_EQ(rs->State(), ado::adStateClosed);
    EXPECT_EQ(failureOf([&] { rs->Open(QStringLiteral("SELECT Nobody FROM tblContacts"), link, 1, 3, 1); }), -2147217904);
}

TEST_F(StoreFailure, QueriesTheStoreDoesNotUnderstand)
{
    auto rs = store.CreateRecordset();
    for (const char* q : {"DELETE FROM tblTasks", "SELECT * FROM tblTasks, tblContacts",
                          "SELECT * FROM tblTasks WHERE EntryID ==== 'x'", "SELECT * FROM tblContacts ORDER BY 1 + 2"}) {
        try {
            rs->Open(QString::fromLatin1(q), link, 1, 3, 1);
            ADD_FAILURE() << q;
        } catch (const Failure& f) {
            EXPECT_EQ(f.number(), -2147217900) << q;
            EXPECT_TRUE(f.description().contains(QString::fromLatin1(q))) << f.description().toStdString();
        }
    }
}

TEST_F(StoreFailure, AnEngineFailureSaysInWordsWhichFileAndWhatAndKeepsTheStatementForTheLog)
{
    try {
        sqlcipher::loadStore(dir.path(), QJsonDocument::fromJson(R"({"local": {"tblTaskGroups": [{"ID": 1}, {"ID": 1}]}})").object());
        ADD_FAILURE() << "a second row with the same key went in";
    } catch (const Failure& f) {
        EXPECT_EQ(f.description().section(QLatin1Char('\n'), 0, 0),
                  QStringLiteral("Steplets cannot save a change to the database %1: a value breaks a rule of its table.")
                      .arg(dir.file(QStringLiteral("OVLocal.db"))));
        EXPECT_TRUE(f.description().section(QLatin1Char('\n'), 1).contains(QStringLiteral("INSERT INTO \"tblTaskGroups\"")))
            << f.description().toStdString();
    }
}

TEST_F(StoreFailure, ClosedConnectionAndOpenTwice)
{
    auto rs = open(QStringLiteral("SELECT * FROM tblTasks"), link);
    EXPECT_EQ(failureOf([&] { link->Open(storeFiles::linkConnectionString(dir.path())); }), 3705);
    link->Close();
    EXPECT_EQ(link->State(), ado::adStateClosed);
    EXPECT_EQ(failureOf([&] { rs->RecordCount(); }), 3704);
    EXPECT_EQ(failureOf([&] { open(QStringLiteral("SELECT * FROM tblTasks"), link); }), 3704);
    EXPECT_EQ(failureOf([&] { link->Close(); }), 3704);
}

} // namespace
} // namespace steplets::test
