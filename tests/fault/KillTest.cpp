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

// Starts a program and kills it once `ready` holds (polled every millisecond, for at most ten
// seconds) and a further seeded pause of up to `jitterUs` has passed.
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

QString writeFile(const QString& path, const QJsonObject& json)
{
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(QJsonDocument(json).toJson(QJsonDocument::Compact));
    return path;
}

class KilledRun : public ::testing::TestWithParam<int> {};

TEST_P(KilledRun, LeavesReadableTasksNoTemporaryAfterTheNextOpenAndACheckNamingAtMostTheTaskInHand)
{
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    TempDir dir;
    const QString play = dir.file(QStringLiteral("play"));
    const QString tasks = play + QStringLiteral("/vdir/tasks");
    const int before = std::uniform_int_distribution<int>(0, 49)(random);
    QProcess player;
    player.start(QStringLiteral(STEPLETS_SCENARIO_PLAYER),
                 {writeFile(dir.file(QStringLiteral("run.json")), processingSession(50)), QStringLiteral("--keep"), play,
                  QStringLiteral("--out"), dir.file(QStringLiteral("transcript.json"))});
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

class KilledInit : public ::testing::TestWithParam<int> {};

TEST_P(KilledInit, IsFinishedByTheNextInit)
{
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    TempDir dir;
    QProcess init;
    init.start(QStringLiteral(STEPLETS_ADMIN_PATH), {QStringLiteral("init"), QStringLiteral("--dir"), dir.path()});
    killWhen(init, [] { return true; }, random, 40000);
    QProcess again;
    again.start(QStringLiteral(STEPLETS_ADMIN_PATH), {QStringLiteral("init"), QStringLiteral("--dir"), dir.path()});
    ASSERT_TRUE(again.waitForFinished(30000));
    // Both made by the first, or what it left finished by the second.
    const bool bothThere = again.exitCode() == 1 && again.readAllStandardError().contains("already exists");
    EXPECT_TRUE(again.exitCode() == 0 || bothThere) << again.readAllStandardError().toStdString();
    EXPECT_EQ(checkProblems(dir.path()), QStringList());
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), (QStringList{"OVLink.db", "OVLocal.db"}));
}

INSTANTIATE_TEST_SUITE_P(SeededMoments, KilledInit, ::testing::Range(1, 6));

class KilledFirstStart : public ::testing::TestWithParam<int> {};

TEST_P(KilledFirstStart, IsSeededWholeAtTheNextStart)
{
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    TempDir home;
    auto desktop = [&](QProcess& p) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("XDG_STATE_HOME"), home.file(QStringLiteral("state")));
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(STEPLETS_DESKTOP_PROGRAM),
                {QStringLiteral("--home"), home.path(), QStringLiteral("--play"), QStringLiteral(STEPLETS_DESKTOP_CLOSE)});
    };
    QProcess first;
    desktop(first);
    killWhen(first, [] { return true; }, random, 400000);
    QProcess second;
    desktop(second);
    ASSERT_TRUE(second.waitForFinished(60000));
    EXPECT_EQ(second.exitCode(), 0) << second.readAll().toStdString();
    const QJsonObject store = sqlcipher::dumpStore(home.path());
    EXPECT_FALSE(store.value("local").toObject().value("tblSteplets").toArray().isEmpty()) << "the demo templates";
    EXPECT_FALSE(store.value("link").toObject().value("tblContacts").toArray().isEmpty()) << "the demo contacts";
    EXPECT_FALSE(QDir(home.file(QStringLiteral("vdir/contacts"))).entryList({QStringLiteral("*.vcf")}).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(SeededMoments, KilledFirstStart, ::testing::Range(1, 6));

} // namespace
