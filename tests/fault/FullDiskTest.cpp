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
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

using namespace steplets;
using namespace steplets::test;

namespace {

constexpr qint64 kDisk = 32 << 20;

class OnASmallDisk : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!enterPrivateMounts()) GTEST_SKIP() << "a mount namespace needs root";
        ASSERT_TRUE(mountTmpfs(disk.path(), kDisk));
        QDir().mkpath(play());
    }
    QString play() const { return disk.file(QStringLiteral("play")); }
    static scenario::Scenario scenarioOf(const QJsonObject& json)
    {
        QString error;
        auto s = scenario::parseScenario(QJsonDocument(json).toJson(), &error);
        EXPECT_TRUE(s) << error.toStdString();
        return s.value_or(scenario::Scenario());
    }
    // The one report a play made, its first line; the reports themselves when there is not one.
    static QString onlyReport(const scenario::PlayResult& r)
    {
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
    QString diskFull() const { return QStringLiteral("Steplets cannot save a change to the database %1/OVLocal.db: the disk is full.").arg(play()); }

    TempDir disk;
};

TEST_F(OnASmallDisk, AFullDiskDuringARunIsReportedOnceAndTheTasksBeforeItAreWhole)
{
    scenario::PlayHooks hooks;
    hooks.beforeFirstSave = [&](int savedBefore) {
        if (savedBefore == 2) fillDisk(play());
    };
    const QString said = onlyReport(scenario::play(scenarioOf(processingSession(5)), play(), scenario::Host::Scripted, hooks));
    EXPECT_TRUE(said.contains("No space left on device")) << said.toStdString();
    const QString tasks = play() + QStringLiteral("/vdir/tasks");
    EXPECT_EQ(QDir(tasks).entryList({QStringLiteral("*.ics")}, QDir::Files), (QStringList{"new-0001.ics", "new-0002.ics"}));
    EXPECT_EQ(unreadableTasks(tasks), QStringList());
    EXPECT_EQ(temporariesIn(tasks), QStringList());
    EXPECT_EQ(checkProblems(play()), QStringList()) << "every task recorded is whole";
    EXPECT_EQ(table("link", "tblTasks").size(), 2);
}

TEST_F(OnASmallDisk, AFullDiskWhileAGroupIsEditedIsReportedOnceAndTheGroupKeepsWhatItHad)
{
    // Groups are edited where no time card is open.
    QJsonObject session = processingSession(2);
    session.remove("host");
    QJsonObject local = session.value("store").toObject().value("local").toObject();
    local.insert("tblTaskGroups", QJsonArray{QJsonObject{{"ID", 1}, {"GroupName", "Run"}, {"CommonUserResponse", true}, {"Prompt", "Which?"}}});
    session.insert("store", QJsonObject{{"local", local}});
    session.insert("script", QJsonArray{QJsonObject{{"form", "frmSteplet"}, {"select", "cboGroup"}, {"item", "Run"}},
                                        QJsonObject{{"form", "frmSteplet"}, {"type", "txtGroupPrompt"}, {"text", QString(1 << 20, 'p')}},
                                        QJsonObject{{"form", "frmSteplet"}, {"close", true}}});
    scenario::PlayHooks hooks;
    hooks.afterSetUp = [&](const QString& dir) { fillDisk(dir, 256 << 10); };
    EXPECT_EQ(onlyReport(scenario::play(scenarioOf(session), play(), scenario::Host::Scripted, hooks)), diskFull()) << "";
    const QJsonArray groups = table("local", "tblTaskGroups");
    ASSERT_EQ(groups.size(), 1);
    EXPECT_EQ(groups[0].toObject().value("Prompt").toString(), "Which?");
    EXPECT_EQ(checkProblems(play()), QStringList());
}

TEST_F(OnASmallDisk, AFullDiskWhileATemplateIsSavedIsReportedOnceAndLeavesNoRow)
{
    RecordingSink sink;
    const QString vdirRoot = play() + QStringLiteral("/vdir");
    QDir().mkpath(vdirRoot + QStringLiteral("/tasks"));
    sqlcipher::createDatabases(play());
    session().ports.store = std::make_shared<sqlcipher::SqlCipherStore>();
    vdir::VdirConfig config;
    config.root = vdirRoot;
    SessionContext& s = session();
    s.olApp = vdir::openVdirStore(config, nullptr);
    s.olNS = s.olApp->GetNamespace(QStringLiteral("MAPI"));
    s.cnLocal = session().store().CreateConnection();
    s.cnLocal->Open(storeFiles::localConnectionString(play()));
    s.rsTemplates = session().store().CreateRecordset();
    s.rsTemplates->Open(QStringLiteral("SELECT * FROM tblSteplets"), s.cnLocal);
    // The task the user filled in, with notes too long for the room that is left.
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
    EXPECT_TRUE(sink.failures[0].description.startsWith(diskFull())) << sink.failures[0].description.toStdString();
    EXPECT_EQ(s.rsTemplates->RecordCount(), 0);
    EXPECT_TRUE(QFile::exists(vdirRoot + QStringLiteral("/tasks/") + task->EntryID() + QStringLiteral(".ics"))) << "the task stays for another try";
    modTasks::ReSetModuleVariables();
    session() = SessionContext();
    session().ports = Ports();
    EXPECT_EQ(table("local", "tblSteplets").size(), 0);
}

TEST_F(OnASmallDisk, DatabasesOnAReadOnlyMountAreReportedAsSuchAndLeftAsTheyWere)
{
    const QStringList files{play() + QStringLiteral("/OVLocal.db"), play() + QStringLiteral("/OVLink.db")};
    auto contents = [&] {
        QByteArray all;
        for (const QString& name : files) all += vdir::readWholeFile(name);
        return all;
    };
    QByteArray before;
    scenario::PlayHooks hooks;
    hooks.afterSetUp = [&](const QString&) {
        before = contents();
        for (const QString& name : files) ASSERT_TRUE(mountReadOnly(name));
    };
    const QString said = onlyReport(scenario::play(scenarioOf(processingSession(1)), play(), scenario::Host::Scripted, hooks));
    EXPECT_TRUE(said.contains(play() + QStringLiteral("/OVLocal.db: it lies on a read-only file system."))) << said.toStdString();
    EXPECT_EQ(contents(), before);
}

} // namespace
