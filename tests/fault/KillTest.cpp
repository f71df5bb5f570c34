// Programs killed at seeded random moments: what they leave must read, hold no temporary file
// after the next open, and check clean, or name exactly the task that was being written.
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

// A killed `init` is finished by the next one (or both databases were already made whole), and a
// killed first start of the desktop program is seeded whole by the next start.
class KilledCreation : public ::testing::TestWithParam<int> {};

TEST_P(KilledCreation, IsMadeWholeByTheNextStart)
{
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    TempDir dir;
    const bool admin = GetParam() <= 5;
    const QString program = admin ? QStringLiteral(STEPLETS_ADMIN_PATH) : QStringLiteral(STEPLETS_DESKTOP_PROGRAM);
    const QStringList args = admin ? QStringList{"init", "--dir", dir.path()}
                                   : QStringList{"--home", dir.path(), "--play", QStringLiteral(STEPLETS_DESKTOP_CLOSE)};
    QProcess first, again;
    start(first, program, args, dir.path());
    killWhen(first, [] { return true; }, random, admin ? 40000 : 400000);
    start(again, program, args, dir.path());
    ASSERT_TRUE(again.waitForFinished(60000));
    const bool madeByTheFirst = admin && again.exitCode() == 1 && again.readAllStandardError().contains("already exists");
    EXPECT_TRUE(again.exitCode() == 0 || madeByTheFirst) << again.readAll().toStdString();
    EXPECT_EQ(checkProblems(dir.path()), QStringList());
    if (admin) { EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), (QStringList{"OVLink.db", "OVLocal.db"})); }
    else { EXPECT_FALSE(sqlcipher::dumpStore(dir.path()).value("local").toObject().value("tblSteplets").toArray().isEmpty()) << "the demo"; }
}

INSTANTIATE_TEST_SUITE_P(SeededMoments, KilledCreation, ::testing::Range(1, 11));

} // namespace
