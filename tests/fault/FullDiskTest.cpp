// A disk that fills up and databases on a read-only mount, each in a mount namespace of the test
// process's own: one report that says what happened, and nothing half-written counted as saved.
#include "FaultSupport.h"
#include "Player.h"
#include "RecordingSink.h"
#include "TempDir.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/SqlCipherStore.h"
#include "backends/sqlcipher/StoreData.h"
#include "backends/vdir/VdirFiles.h"
#include "backends/vdir/VdirStore.h"
#include "platform/SafeTaskItem.h"
#include "session/SessionContext.h"
#include "templates/EditedTemplate.h"
#include "templates/TemplateRow.h"
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

using namespace steplets;
using namespace steplets::test;

namespace {

class OnASmallDisk : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!enterPrivateMounts()) GTEST_SKIP() << "a mount namespace needs root";
        ASSERT_TRUE(mountTmpfs(disk.path(), 32 << 20));
        QDir().mkpath(play());
    }
    QString play() const { return disk.file(QStringLiteral("play")); }
    // The one report the play of `session` made, its first line; the reports when there is not one.
    QString onlyReport(const QJsonObject& session, const scenario::PlayHooks& hooks) const
    {
        QString error;
        auto s = scenario::parseScenario(QJsonDocument(session).toJson(), &error);
        EXPECT_TRUE(s) << error.toStdString();
        const scenario::PlayResult r = scenario::play(s.value_or(scenario::Scenario()), play(), scenario::Host::Scripted, hooks);
        QJsonArray said;
        for (const QJsonValue& e : r.transcript.value_or(QJsonObject()).value("events").toArray())
            if (e.toObject().contains("report")) said.append(e.toObject().value("report"));
        if (said.size() != 1) return r.problem + QString::fromUtf8(QJsonDocument(said).toJson());
        return said[0].toObject().value("description").toString().section('\n', 0, 0);
    }
    QJsonArray table(const char* db, const char* name) const
    {
        return sqlcipher::dumpStore(play()).value(QLatin1String(db)).toObject().value(QLatin1String(name)).toArray();
    }

    TempDir disk;
};

class DiskFault : public OnASmallDisk, public ::testing::WithParamInterface<int> {};

// The disk fills up as the third task of a run is saved or as a group's prompt is typed, or the
// databases lie on a read-only mount. A process reports its first failure only: each case runs
// in a process of its own.
TEST_P(DiskFault, IsReportedOnceAndWhatWasSavedBeforeIsWhole)
{
    const QString tasks = play() + QStringLiteral("/vdir/tasks");
    const QStringList databases{play() + QStringLiteral("/OVLocal.db"), play() + QStringLiteral("/OVLink.db")};
    auto contents = [&] { return vdir::readWholeFile(databases[0]) + vdir::readWholeFile(databases[1]); };
    QByteArray before;
    // Groups are edited where no time card is open; the prompt typed is larger than the room left.
    QJsonObject groupEdit = processingSession(2);
    groupEdit.remove("host");
    QJsonObject local = groupEdit.value("store").toObject().value("local").toObject();
    local.insert("tblTaskGroups", QJsonArray{QJsonObject{{"ID", 1}, {"GroupName", "Run"}, {"CommonUserResponse", true}, {"Prompt", "Which?"}}});
    groupEdit.insert("store", QJsonObject{{"local", local}});
    groupEdit.insert("script", QJsonArray{QJsonObject{{"form", "frmSteplet"}, {"select", "cboGroup"}, {"item", "Run"}},
                                          QJsonObject{{"form", "frmSteplet"}, {"type", "txtGroupPrompt"}, {"text", QString(1 << 20, 'p')}},
                                          QJsonObject{{"form", "frmSteplet"}, {"close", true}}});
    struct Case { QJsonObject session; scenario::PlayHooks hooks; QString says; std::function<void()> check; };
    const Case cases[] = {
        {processingSession(5), {{}, [&](int savedBefore) { if (savedBefore == 2) fillDisk(play()); }}, QStringLiteral("No space left on device"), [&] {
             EXPECT_EQ(QDir(tasks).entryList({QStringLiteral("*.ics")}, QDir::Files), (QStringList{"new-0001.ics", "new-0002.ics"}));
             EXPECT_EQ(unreadableTasks(tasks), QStringList());
             EXPECT_EQ(temporariesIn(tasks), QStringList());
             EXPECT_EQ(table("link", "tblTasks").size(), 2);
         }},
        {processingSession(1), {[&](const QString&) {
             before = contents();
             for (const QString& name : databases) ASSERT_TRUE(mountReadOnly(name));
         }, {}}, play() + QStringLiteral("/OVLocal.db: it lies on a read-only file system."), [&] { EXPECT_EQ(contents(), before); }},
        {groupEdit, {[&](const QString& dir) { fillDisk(dir, 256 << 10); }, {}}, QStringLiteral("OVLocal.db: the disk is full."), [&] {
             const QJsonArray groups = table("local", "tblTaskGroups");
             EXPECT_EQ(groups.size() == 1 ? groups[0].toObject().value("Prompt").toString() : QString(), "Which?");
         }},
    };
    const Case& c = cases[GetParam()];
    const QString said = onlyReport(c.session, c.hooks);
    EXPECT_TRUE(said.contains(c.says)) << said.toStdString();
    c.check();
    EXPECT_EQ(checkProblems(play()), QStringList()) << "every task recorded is whole";
}

INSTANTIATE_TEST_SUITE_P(FullDiskAndReadOnlyDatabases, DiskFault, ::testing::Values(0, 1, 2));

// Notes too long for the room left on the disk: the save is reported once, no row is written,
// and the task stays for another try.
TEST_F(OnASmallDisk, AFullDiskWhileATemplateIsSavedIsReportedOnceAndLeavesNoRow)
{
    RecordingSink sink;
    SessionContext& s = session();
    sqlcipher::createDatabases(play());
    s.ports.store = std::make_shared<sqlcipher::SqlCipherStore>();
    vdir::VdirConfig config;
    config.root = play() + QStringLiteral("/vdir");
    QDir().mkpath(config.root + QStringLiteral("/tasks"));
    s.olApp = vdir::openVdirStore(config, nullptr);
    s.olNS = s.olApp->GetNamespace(QStringLiteral("MAPI"));
    s.cnLocal = s.store().CreateConnection();
    s.cnLocal->Open(storeFiles::localConnectionString(play()));
    s.rsTemplates = s.store().CreateRecordset();
    s.rsTemplates->Open(QStringLiteral("SELECT * FROM tblSteplets"), s.cnLocal);
    auto task = s.olNS->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"))->Items().Add();
    task->set(QStringLiteral("Subject"), Value(QStringLiteral("Annual review")));
    SafeTaskItem safe;
    safe.setItem(task);
    safe.setBody(QString(1 << 20, 'n'));
    task->Save();
    modTasks::EditedTemplate().TemplateItem = task;
    modTasks::EditedTemplate().ReferenceDate = Date::fromParts(2026, 3, 16, 15, 30);
    fillDisk(play(), 256 << 10);
    Bool16 edit(false);
    modTasks::SaveTemplateToDB(edit, [] { return Date::fromParts(2026, 3, 16, 15, 30); });

    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_TRUE(sink.failures[0].description.contains(QStringLiteral("OVLocal.db: the disk is full."))) << sink.failures[0].description.toStdString();
    EXPECT_EQ(s.rsTemplates->RecordCount(), 0);
    EXPECT_TRUE(QFile::exists(config.root + QStringLiteral("/tasks/") + task->EntryID() + QStringLiteral(".ics")));
    modTasks::ReSetModuleVariables();
    session() = SessionContext();
    EXPECT_EQ(table("local", "tblSteplets").size(), 0);
}

} // namespace
