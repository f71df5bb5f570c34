// The desktop program from the outside: started as a user starts it, on its embedded demo data in
// a fresh folder, with a whole session played on its own windows as real input. It must end by
// itself, and what Undo took back must be gone from the task folder.
#include "TempDir.h"
#include <QDir>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

namespace {

struct ProgramRun {
    bool ended = false;
    int exitCode = -1;
    QString output;
};

// Starts the program in `home` with `arguments` and waits for it to end by itself.
ProgramRun runProgram(const QString& home, QStringList arguments)
{
    QProcess program;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("XDG_STATE_HOME"), home + QStringLiteral("/state"));
    program.setProcessEnvironment(env);
    program.setProcessChannelMode(QProcess::MergedChannels);
    arguments.prepend(home);
    arguments.prepend(QStringLiteral("--home"));
    program.start(QStringLiteral(STEPLETS_DESKTOP_PROGRAM), arguments);
    ProgramRun run;
    if (!program.waitForStarted(10000)) return run;
    // A window left waiting in a loop nobody can see would keep the process alive.
    run.ended = program.waitForFinished(90000);
    if (!run.ended) program.kill();
    run.exitCode = program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
    run.output = QString::fromLocal8Bit(program.readAll());
    // Nothing of the program may outlive the application it ran in.
    EXPECT_FALSE(run.output.contains(QStringLiteral("QGuiApplication"))) << run.output.toStdString();
    return run;
}

TEST(DesktopEndToEnd, ProcessReviewAndUndoLeaveNoTaskAndTheProgramEnds)
{
    steplets::test::TempDir home;
    const ProgramRun run = runProgram(home.path(), {QStringLiteral("--time-card"), QStringLiteral("7"), QStringLiteral("--contact-id"),
                                             QStringLiteral("2"), QStringLiteral("--contact-name"), QStringLiteral("Ada Byrne"),
                                             QStringLiteral("--play"), QStringLiteral(STEPLETS_DESKTOP_SESSION)});
    ASSERT_TRUE(run.ended) << "the program did not end by itself:\n" << run.output.toStdString();
    EXPECT_EQ(run.exitCode, 0) << run.output.toStdString();

    const QDir tasks(home.path() + QStringLiteral("/vdir/tasks"));
    ASSERT_TRUE(tasks.exists());
    EXPECT_EQ(tasks.entryList({QStringLiteral("*.ics")}, QDir::Files), QStringList()) << "Undo left these behind";
    // The demo, the settings, the task folder and the log are the user's alone.
    EXPECT_EQ(steplets::test::notPrivate(home.path()), QStringList());
}

TEST(DesktopEndToEnd, AReportedFailureEndsTheProgramWithStatusOneAndALogInItsFolder)
{
    steplets::test::TempDir home;
    // A first start lays out the demo; without its link database the next one cannot open.
    ASSERT_TRUE(runProgram(home.path(), {QStringLiteral("--play"), QStringLiteral(STEPLETS_DESKTOP_CLOSE)}).ended);
    ASSERT_TRUE(QFile::remove(home.file(QStringLiteral("OVLink.db"))));
    const ProgramRun run = runProgram(home.path(), {QStringLiteral("--play"), QStringLiteral(STEPLETS_DESKTOP_CLOSE)});
    ASSERT_TRUE(run.ended) << run.output.toStdString();
    EXPECT_EQ(run.exitCode, 1) << run.output.toStdString();
    EXPECT_TRUE(run.output.contains(QStringLiteral("OVLink.db"))) << run.output.toStdString();
    EXPECT_TRUE(QFile::exists(home.file(QStringLiteral("steplets.log"))));
}

} // namespace
