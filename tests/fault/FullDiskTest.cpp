// A disk that fills up and databases on a read-only mount, each in a mount namespace of the test
// process's own: one report that says what happened, and nothing half-written counted as saved.
#include "FaultSupport.h"
#include "Player.h"
#include "TempDir.h"
#include "backends/sqlcipher/StoreData.h"
#include "backends/vdir/VdirFiles.h"
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

// The disk fills up as the third task of a run is saved, or the databases lie on a read-only
// mount. A process reports its first failure only: each case runs in a process of its own.
TEST_P(DiskFault, IsReportedOnceAndWhatWasSavedBeforeIsWhole)
{
    const QString tasks = play() + QStringLiteral("/vdir/tasks");
    const QStringList databases{play() + QStringLiteral("/OVLocal.db"), play() + QStringLiteral("/OVLink.db")};
    auto contents = [&] { return vdir::readWholeFile(databases[0]) + vdir::readWholeFile(databases[1]); };
    QByteArray before;
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
    };
    const Case& c = cases[GetParam()];
    const QString said = onlyReport(c.session, c.hooks);
    EXPECT_TRUE(said.contains(c.says)) << said.toStdString();
    c.check();
    EXPECT_EQ(checkProblems(play()), QStringList()) << "every task recorded is whole";
}

INSTANTIATE_TEST_SUITE_P(FullDiskDuringARunAndReadOnlyDatabases, DiskFault, ::testing::Values(0, 1));

} // namespace
