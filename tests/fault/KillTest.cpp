// Programs killed at seeded random moments: what they leave must read, hold no temporary file
// after the next open, and check clean, or name exactly the task that was being written; what a
// killed set-up left, the next one finishes.
#include "FaultSupport.h"
#include "TempDir.h"
#include "backends/sqlcipher/StoreData.h"
#include "backends/vdir/VdirStore.h"
#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QThread>
#include <gtest/gtest.h>
#include <random>

using namespace steplets;
using namespace steplets::test;

namespace {

// Starts `program` with `args` (the desktop program offscreen, its state under `dir`).
void start(QProcess& p, const QString& program, const QStringList& args, const QString& dir)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("XDG_STATE_HOME"), dir + QStringLiteral("/state"));
    p.setProcessEnvironment(env);
    p.start(program, args);
}

// Kills a started program once `ready` holds (polled every millisecond, for at most ten seconds)
// and a further seeded pause of up to `jitterUs` has passed.
void killWhen(QProcess& program, const std::function<bool()>& ready, std::mt19937& random, int jitterUs)
{
    ASSERT_TRUE(program.waitForStarted(10000));
    QElapsedTimer waited;
    waited.start();
    while (program.state() == QProcess::Running && !ready() && waited.elapsed() < 10000) QThread::usleep(1000);
    QThread::usleep(std::uniform_int_distribution<int>(0, jitterUs)(random));
    program.kill();
    program.waitForFinished(10000);
}

class KilledRun : public ::testing::TestWithParam<int> {};

TEST_P(KilledRun, LeavesReadableTasksNoTemporaryAfterTheNextOpenAndACheckNamingAtMostTheTaskInHand)
{
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    TempDir dir;
    const QString play = dir.file(QStringLiteral("play")), tasks = play + QStringLiteral("/vdir/tasks");
    const int before = std::uniform_int_distribution<int>(0, 49)(random);
    QFile session(dir.file(QStringLiteral("run.json")));
    ASSERT_TRUE(session.open(QIODevice::WriteOnly));
    session.write(QJsonDocument(processingSession(50)).toJson(QJsonDocument::Compact));
    session.close();
    QProcess player;
    start(player, QStringLiteral(STEPLETS_SCENARIO_PLAYER), {session.fileName(), "--keep", play, "--out", dir.file("transcript.json")}, dir.path());
    killWhen(player, [&] { return QDir(tasks).exists() && QDir(tasks).entryList({QStringLiteral("*.ics")}, QDir::Files).size() >= before; },
             random, 3000);

    EXPECT_EQ(unreadableTasks(tasks), QStringList());
    vdir::VdirConfig config;
    config.root = play + QStringLiteral("/vdir");
    vdir::openVdirStore(config, nullptr)->GetNamespace(QStringLiteral("MAPI"))->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"));
    EXPECT_EQ(temporariesIn(tasks), QStringList());
    const QStringList problems = checkProblems(play);
    if (!problems.isEmpty()) {
        const QJsonArray recorded = sqlcipher::dumpStore(play).value("link").toObject().value("tblTasks").toArray();
        ASSERT_FALSE(recorded.isEmpty()) << problems.join('\n').toStdString();
        const QString inHand = recorded.last().toObject().value("EntryID").toString();
        ASSERT_EQ(problems.size(), 1) << problems.join('\n').toStdString();
        EXPECT_TRUE(problems[0].contains(QStringLiteral("the task %1 of").arg(inHand))) << problems[0].toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(SeededMoments, KilledRun, ::testing::Range(1, 21));

class KilledSetUp : public ::testing::TestWithParam<int> {};

// The admin tool's init, then the desktop program's first start, each killed and started again.
TEST_P(KilledSetUp, IsFinishedByTheNextInitAndTheNextStartSeedsWhole)
{
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    TempDir dir, home;
    const QStringList init{"init", "--dir", dir.path()};
    QProcess first, again;
    start(first, QStringLiteral(STEPLETS_ADMIN_PATH), init, dir.path());
    killWhen(first, [] { return true; }, random, 40000);
    start(again, QStringLiteral(STEPLETS_ADMIN_PATH), init, dir.path());
    ASSERT_TRUE(again.waitForFinished(30000));
    // Both made by the first, or what it left finished by the second.
    const bool bothThere = again.exitCode() == 1 && again.readAllStandardError().contains("already exists");
    EXPECT_TRUE(again.exitCode() == 0 || bothThere) << again.readAllStandardError().toStdString();
    EXPECT_EQ(checkProblems(dir.path()), QStringList());
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), (QStringList{"OVLink.db", "OVLocal.db"}));

    const QStringList desktop{"--home", home.path(), "--play", STEPLETS_DESKTOP_CLOSE};
    QProcess firstStart, secondStart;
    start(firstStart, QStringLiteral(STEPLETS_DESKTOP_PROGRAM), desktop, home.path());
    killWhen(firstStart, [] { return true; }, random, 400000);
    start(secondStart, QStringLiteral(STEPLETS_DESKTOP_PROGRAM), desktop, home.path());
    ASSERT_TRUE(secondStart.waitForFinished(60000));
    EXPECT_EQ(secondStart.exitCode(), 0) << secondStart.readAll().toStdString();
    const QJsonObject store = sqlcipher::dumpStore(home.path());
    EXPECT_FALSE(store.value("local").toObject().value("tblSteplets").toArray().isEmpty()) << "the demo templates";
    EXPECT_FALSE(store.value("link").toObject().value("tblContacts").toArray().isEmpty()) << "the demo contacts";
    EXPECT_FALSE(QDir(home.file(QStringLiteral("vdir/contacts"))).entryList({QStringLiteral("*.vcf")}).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(SeededMoments, KilledSetUp, ::testing::Range(1, 6));

} // namespace
