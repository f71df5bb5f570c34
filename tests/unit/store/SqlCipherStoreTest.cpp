// The SQLCipher backend: it keeps the store contract, and what is its own: encrypted files,
// files that are no database, the check, and rows loaded from JSON.
#include "RecordsetContract.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/SqlCipherStore.h"
#include "backends/sqlcipher/StoreData.h"
#include <QFile>
#include <QJsonDocument>

namespace steplets::test {

INSTANTIATE_TEST_SUITE_P(SqlCipher, RecordsetContract,
                         ::testing::Values(StoreBackend{"SqlCipher", [](const QString& dir) -> std::unique_ptr<StoreGateway> {
                             sqlcipher::createDatabases(dir);
                             return std::make_unique<sqlcipher::SqlCipherStore>();
                         }}),
                         [](const auto& info) { return std::string(info.param.name); });

namespace {

class SqlCipherStoreTest : public RecordsetContract {
protected:
    void SetUp() override
    {
        sqlcipher::createDatabases(dir.path());
        store = std::make_unique<sqlcipher::SqlCipherStore>();
        local = store->CreateConnection();
        local->Open(storeFiles::localConnectionString(dir.path()));
    }
};

// A wrong password is the admin tool's broken-database case.
TEST_F(SqlCipherStoreTest, AFileThatIsNoDatabaseIsRefusedNamingTheFile)
{
    TempDir other;
    QFile junk(other.file(QStringLiteral("OVLink.db")));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(8192, 'j'));
    junk.close();
    auto cn = store->CreateConnection();
    const Failure f = failure([&] { cn->Open(storeFiles::linkConnectionString(other.path())); });
    EXPECT_EQ(f.number(), -2147217843);
    EXPECT_TRUE(f.description().contains(junk.fileName())) << f.description().toStdString();
    EXPECT_EQ(cn->State(), ado::adStateClosed);
}

TEST_F(SqlCipherStoreTest, CreationEncryptsAndTheCheckNamesOrphanAssignments)
{
    QFile f(dir.file(QStringLiteral("OVLink.db")));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_FALSE(f.readAll().contains("tblContacts"));

    addTemplates({"t"});
    auto groups = open(QStringLiteral("SELECT * FROM tblTaskGroups"), local);
    addRow(*groups, {{1, Value("g")}});
    addAssignments({{1, 1}, {1, 99}, {7, 1}});
    const QStringList problems = sqlcipher::checkDatabases(dir.path());
    ASSERT_EQ(problems.size(), 2) << problems.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(problems[0].contains(QStringLiteral("TaskID 99")) && problems[0].contains(QStringLiteral("no template")));
    EXPECT_TRUE(problems[1].contains(QStringLiteral("GroupID 7")) && problems[1].contains(QStringLiteral("no group")));
}

// The typed values of a dump are what the scenarios' store expectations read.
TEST_F(SqlCipherStoreTest, LoadKeepsGivenIdsAndRefusesWhatBreaksARule)
{
    sqlcipher::loadStore(dir.path(), QJsonDocument::fromJson(R"({"local": {"tblTaskGroups": [
        {"ID": 5, "GroupName": "five", "CommonAnchor": true}, {"GroupName": "next"}]}})").object());
    auto groups = open(QStringLiteral("SELECT * FROM tblTaskGroups"), local);
    EXPECT_EQ(column(*groups, "ID"), (QStringList{"5", "6"}));
    groups->MoveFirst();
    EXPECT_EQ(groups->Fields(2).value(), Value(true));
    EXPECT_EQ(failureOf([&] {
                  sqlcipher::loadStore(dir.path(), QJsonDocument::fromJson(R"({"local": {"tblTaskGroups": [{"Colour": 1}]}})").object());
              }),
              -2147217904);

    // An engine failure says in words which file and what, and keeps the statement for the log.
    const Failure twice = failure([&] {
        sqlcipher::loadStore(dir.path(), QJsonDocument::fromJson(R"({"local": {"tblTaskGroups": [{"ID": 1}, {"ID": 1}]}})").object());
    });
    EXPECT_EQ(twice.description().section(QLatin1Char('\n'), 0, 0),
              QStringLiteral("Steplets cannot save a change to the database %1: a value breaks a rule of its table.")
                  .arg(dir.file(QStringLiteral("OVLocal.db"))));
    EXPECT_TRUE(twice.description().section(QLatin1Char('\n'), 1).contains(QStringLiteral("INSERT INTO \"tblTaskGroups\"")));
}

} // namespace
} // namespace steplets::test
