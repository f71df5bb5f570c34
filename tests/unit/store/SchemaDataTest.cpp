// The schemas, their creation and check, and the rows as JSON.
#include "StoreFixture.h"
#include "backends/sqlcipher/StoreData.h"
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

namespace steplets::test {
namespace {

using SchemaData = StoreFixture;

QJsonArray rowsOf(const QJsonObject& dump, const char* db, const char* table)
{
    return dump.value(QLatin1String(db)).toObject().value(QLatin1String(table)).toArray();
}

TEST_F(SchemaData, TemplateColumnsStandAtTheirPositions)
{
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    ASSERT_EQ(rs->FieldCount(), 57);
    const std::map<int, QString> expected{{0, "ID"}, {1, "ActualWork"}, {3, "Body"}, {18, "PatternEndDate"},
                                          {33, "Status"}, {34, "Reserved34"}, {35, "Reserved35"}, {36, "Subject"},
                                          {39, "Reserved39"}, {40, "DueDateOffset"}, {45, "DateType"},
                                          {49, "FillIn4"}, {54, "PromptForAssignee"}, {55, "AnchorDescription"},
                                          {56, "Tag"}};
    for (const auto& [pos, name] : expected) EXPECT_EQ(rs->fieldName(pos), name) << pos;
    auto groups = open(QStringLiteral("SELECT * FROM tblTaskGroups"), local);
    EXPECT_EQ(groups->fieldName(1), QStringLiteral("GroupName"));
    EXPECT_EQ(groups->fieldName(3), QStringLiteral("CommonUserResponse"));
}

TEST_F(SchemaData, InitRefusesToOverwriteAnExistingDatabase)
{
    const QString file = dir.file(QStringLiteral("OVLocal.db"));
    const qint64 size = QFileInfo(file).size();
    try {
        sqlcipher::createDatabases(dir.path());
        FAIL();
    } catch (const Failure& f) {
        EXPECT_TRUE(f.description().contains(QStringLiteral("already exists")));
    }
    EXPECT_EQ(QFileInfo(file).size(), size);
    EXPECT_TRUE(sqlcipher::checkDatabases(dir.path()).isEmpty());
}

TEST_F(SchemaData, DatabasesAreEncrypted)
{
    QFile f(dir.file(QStringLiteral("OVLink.db")));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray bytes = f.readAll();
    EXPECT_FALSE(bytes.startsWith("SQLite format 3"));
    EXPECT_FALSE(bytes.contains("tblContacts"));
}

TEST_F(SchemaData, CheckNamesAssignmentsThatPointAtNothing)
{
    addTemplates({QStringLiteral("t")});
    auto groups = open(QStringLiteral("SELECT * FROM tblTaskGroups"), local);
    groups->AddNew();
    groups->Fields(1).setValue(Value("g"));
    groups->Update();
    addAssignments({{1, 1}, {1, 99}, {7, 1}});
    const QStringList problems = sqlcipher::checkDatabases(dir.path());
    ASSERT_EQ(problems.size(), 2) << problems.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(problems[0].contains(QStringLiteral("TaskID 99")) && problems[0].contains(QStringLiteral("no template")));
    EXPECT_TRUE(problems[1].contains(QStringLiteral("GroupID 7")) && problems[1].contains(QStringLiteral("no group")));
}

TEST_F(SchemaData, DumpGivesTypedValuesByColumnName)
{
    auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
    rs->AddNew();
    rs->Fields(36).setValue(Value("Dumped"));
    rs->Fields(6).setValue(Value(true));
    rs->Fields(8).setValue(Value(Date::fromParts(2026, 3, 16, 15, 30, 0)));
    rs->Fields(45).setValue(Value(2));
    rs->Update();
    const QJsonObject dump = sqlcipher::dumpStore(dir.path());
    const QJsonObject row = rowsOf(dump, "local", "tblSteplets").at(0).toObject();
    EXPECT_EQ(row.value(QStringLiteral("ID")).toInt(), 1);
    EXPECT_EQ(row.value(QStringLiteral("Subject")).toString(), QStringLiteral("Dumped"));
    EXPECT_TRUE(row.value(QStringLiteral("Complete")).isBool());
    EXPECT_EQ(row.value(QStringLiteral("DueDate")).toString(), QStringLiteral("2026-03-16T15:30:00"));
    EXPECT_EQ(row.value(QStringLiteral("DateType")).toInt(), 2);
    EXPECT_TRUE(row.value(QStringLiteral("Body")).isNull());
    EXPECT_EQ(row.value(QStringLiteral("Tag")).toInt(), 0);
    EXPECT_EQ(rowsOf(dump, "link", "sysLinkedTables").size(), 1);
    EXPECT_TRUE(dump.value(QStringLiteral("link")).toObject().contains(QStringLiteral("tblTasks")));
}

TEST_F(SchemaData, LoadKeepsGivenIdsAndTheStoreContinuesAfterThem)
{
    const QJsonObject store{{QStringLiteral("local"),
                             QJsonObject{{QStringLiteral("tblTaskGroups"),
                                          QJsonArray{QJsonObject{{QStringLiteral("ID"), 5}, {QStringLiteral("GroupName"), QStringLiteral("five")},
                                                                 {QStringLiteral("CommonAnchor"), true}},
                                                     QJsonObject{{QStringLiteral("GroupName"), QStringLiteral("next")}}}}}}};
    sqlcipher::loadStore(dir.path(), store);
    auto rs = open(QStringLiteral("SELECT * FROM tblTaskGroups"), local);
    EXPECT_EQ(column(*rs, QStringLiteral("ID")), (QStringList{QStringLiteral("5"), QStringLiteral("6")}));
    rs->MoveFirst();
    EXPECT_EQ(rs->Fields(2).value(), Value(true));

    const QJsonObject bad{{QStringLiteral("local"), QJsonObject{{QStringLiteral("tblTaskGroups"),
                                                                 QJsonArray{QJsonObject{{QStringLiteral("Colour"), 1}}}}}}};
    EXPECT_EQ(failureOf([&] { sqlcipher::loadStore(dir.path(), bad); }), -2147217904);
}

TEST_F(SchemaData, DemoDataHasEachDateTypeTwoGroupsAndTheContacts)
{
    QList<sqlcipher::DemoContactRow> contacts;
    for (int i = 1; i <= 12; ++i)
        contacts << sqlcipher::DemoContactRow{QStringLiteral("c-%1").arg(i), QStringLiteral("Person %1").arg(i), QStringLiteral("ACC-%1").arg(i)};
    sqlcipher::seedDemo(dir.path(), contacts);
    const QJsonObject dump = sqlcipher::dumpStore(dir.path());
    std::set<int> dateTypes;
    for (const QJsonValue& t : rowsOf(dump, "local", "tblSteplets")) {
        dateTypes.insert(t.toObject().value(QStringLiteral("DateType")).toInt());
        // A Null would let the template before it fill in this template's task.
        for (const QString& column : t.toObject().keys())
            if (!column.startsWith(QLatin1String("Reserved"))) {
                EXPECT_FALSE(t.toObject().value(column).isNull())
                    << qPrintable(column) << " of template " << t.toObject().value(QStringLiteral("ID")).toInt();
            }
    }
    EXPECT_EQ(dateTypes, (std::set<int>{0, 1, 2}));
    EXPECT_EQ(rowsOf(dump, "local", "tblTaskGroups").size(), 2);
    const QJsonArray rows = rowsOf(dump, "link", "tblContacts");
    ASSERT_EQ(rows.size(), 12);
    EXPECT_EQ(rows.at(11).toObject().value(QStringLiteral("ContactID")).toInt(), 12);
    EXPECT_EQ(rows.at(11).toObject().value(QStringLiteral("ContactEntryID")).toString(), QStringLiteral("c-12"));
    EXPECT_TRUE(rows.at(0).toObject().value(QStringLiteral("Active")).toBool());
    EXPECT_TRUE(sqlcipher::checkDatabases(dir.path()).isEmpty());

    EXPECT_NE(failureOf([&] { sqlcipher::seedDemo(dir.path(), contacts); }), 0) << "demo data goes into empty databases only";
    EXPECT_EQ(rowsOf(sqlcipher::dumpStore(dir.path()), "link", "tblContacts").size(), 12);
}

} // namespace
} // namespace steplets::test
