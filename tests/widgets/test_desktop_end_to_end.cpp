// The desktop program from the outside: started as a user starts it, on its embedded demo data in
// a fresh folder, with a whole session played on its own windows as real input. It must end by
// itself, and what Undo took back must be gone from the task folder.
#include "TempDir.h"
#include <QDir>
#include <QProcess>
#include <gtest/gtest.h>

namespace {

TEST(DesktopEndToEnd, ProcessReviewAndUndoLeaveNoTaskAndTheProgramEnds)
{
    steplets::test::TempDir home;
    QProcess program;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("XDG_STATE_HOME"), home.path() + QStringLiteral("/state"));
    program.setProcessEnvironment(env);
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QStringLiteral(STEPLETS_DESKTOP_PROGRAM),
                  {QStringLiteral("--home"), home.path(), QStringLiteral("--time-card"), QStringLiteral("7"),
                   QStringLiteral("--contact-id"), QStringLiteral("2"), QStringLiteral("--contact-name"),
                   QStringLiteral("Ada Byrne"), QStringLiteral("--play"), QStringLiteral(STEPLETS_DESKTOP_SESSION)});
    ASSERT_TRUE(program.waitForStarted(10000));
    // A window left waiting in a loop nobody can see would keep the process alive.
    const bool ended = program.waitForFinished(90000);
    if (!ended) program.kill();
    const QString output = QString::fromLocal8Bit(program.readAll());
    ASSERT_TRUE(ended) << "the program did not end by itself:\n" << output.toStdString();
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0) << output.toStdString();

    const QDir tasks(home.path() + QStringLiteral("/vdir/tasks"));
    ASSERT_TRUE(tasks.exists());
    EXPECT_EQ(tasks.entryList({QStringLiteral("*.ics")}, QDir::Files), QStringList()) << "Undo left these behind";
}

} // namespace
