// The desktop program: its command line, the embedded default, the failure reporter, and the
// program itself started as a user starts it.
#include "Desktop.h"
#include "HostOptions.h"
#include "QtUiHost.h"
#include "TempDir.h"
#include "WidgetSupport.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/StoreData.h"
#include "backends/vdir/DemoContacts.h"
#include <QProcess>

using namespace steplets;
using namespace steplets::desktop;

namespace {

ParsedCommandLine parse(QStringList args)
{
    args.prepend(QStringLiteral("steplets"));
    return parseCommandLine(args);
}

TEST(DesktopCommandLine, EachOptionSetsItsArgumentWithoutOptionsTheDemoUserKeepsTemplatesAndBadInputIsNamed)
{
    const ParsedCommandLine p = parse({"--time-card", "42", "--contact-id", "-3", "--user-name", "Ada Byrne",
                                       "--contact-term", "Client", "--job-order", "JO-7", "--manage-contacts",
                                       "--select-contact-by-account", "--user-folder-store", "S2", "--home", "/tmp/h",
                                       "--task-folder", "todo", "--description", "Audit"});
    ASSERT_EQ(p.outcome, ParsedCommandLine::Outcome::Run) << p.text.toStdString();
    const HostArguments& a = p.options.args;
    EXPECT_EQ(std::tuple(a.lTimeCardID, a.sContactID, a.bManageContacts, a.bSelectContactByAcct), std::tuple(42, -3, true, true));
    EXPECT_EQ(QStringList({a.sUserName, a.sContactTerm, a.sJobOrder, a.sUserFldrSID.toText(), a.sTaskFolderEID, a.sDesc, p.options.home}),
              QStringList({"Ada Byrne", "Client", "JO-7", "S2", "todo", "Audit", "/tmp/h"}));
    const HostOptions none = parse({}).options;
    EXPECT_EQ(std::tuple(none.args.lTimeCardID, none.args.sUserEID, none.args.sUserName, none.home),
              std::tuple(0, vdir::demoUser().entryId, vdir::demoUser().fullName(), QString()));
    EXPECT_FALSE(none.args.sTaskFolderEID.isEmpty());

    EXPECT_EQ(parse({"--help"}).outcome, ParsedCommandLine::Outcome::Help);
    const ParsedCommandLine notNumber = parse({"--time-card", "seven"});
    EXPECT_EQ(notNumber.outcome, ParsedCommandLine::Outcome::Error);
    EXPECT_TRUE(notNumber.text.contains(QStringLiteral("--time-card")) && notNumber.text.contains(QStringLiteral("seven")));
    for (const QStringList& bad : {QStringList{"--contact-id", "99999999999"}, QStringList{"--no-such-option"}, QStringList{"stray"}})
        EXPECT_EQ(parse(bad).outcome, ParsedCommandLine::Outcome::Error) << bad.join(' ').toStdString();
}

// What a first start lays out is checked by the killed first starts and the end-to-end run.
TEST(EmbeddedDefault, ANextStartLeavesWhatTheFirstLaidOutAlone)
{
    test::TempDir home;
    ASSERT_TRUE(ensureEmbeddedDefault(home.path()));
    EXPECT_TRUE(sqlcipher::checkDatabases(home.path()).isEmpty());
    const QJsonObject dump = sqlcipher::dumpStore(home.path());
    EXPECT_FALSE(ensureEmbeddedDefault(home.path()));
    EXPECT_EQ(sqlcipher::dumpStore(home.path()), dump);
}

TEST(DesktopReporter, TheUserReadsAPlainSentenceTheTrailIsBehindDetailsAndInTheLogAndAStoresSentenceStands)
{
    test::widgetApp();
    test::TempDir home;
    qt::QtUiHost host;
    const QString log = home.file(QStringLiteral("steplets.log"));
    QString what, advice, details;
    test::Driver driver;
    driver.then("the report", [] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        std::tie(what, advice, details) = std::tuple(box->text(), box->informativeText(), box->detailedText());
        EXPECT_EQ(box->icon(), QMessageBox::Critical);
        box->button(QMessageBox::Ok)->click();
    });
    driver.start();
    bool reported = false;
    const QString trail = QStringLiteral("\r\nX:modInitialize: GetRegSettings\r\nX:frmSteplet: Form_Load:Line 30");
    DesktopReporter(host, log, &reported)
        .Report(QStringLiteral("1.0.0"), QStringLiteral("Division by zero"), QStringLiteral("11"), QStringLiteral("Steplets"), trail);
    EXPECT_TRUE(reported);
    // One sentence, no trail, and what to do, naming the log.
    EXPECT_EQ(what.count(QLatin1Char('.')), 1) << what.toStdString();
    EXPECT_TRUE(what.contains(QStringLiteral("Division by zero")) && !what.contains(QStringLiteral("Form_Load")));
    EXPECT_TRUE(advice.contains(log)) << advice.toStdString();
    EXPECT_TRUE(details.contains(QStringLiteral("frmSteplet: Form_Load:Line 30")) && details.contains(QStringLiteral("11")));
    QFile file(log);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString text = QString::fromUtf8(file.readAll());
    for (const char* part : {"1.0.0", "Division by zero", "11", "Steplets", "frmSteplet: Form_Load:Line 30"})
        EXPECT_TRUE(text.contains(QLatin1String(part))) << part;
    EXPECT_EQ(text.count(QLatin1Char('\n')), 1) << "one line per report";

    const FailureMessage m = failureMessage(QStringLiteral("1.0.0"), QStringLiteral("Cannot create the folder \"tasks\" in \"/d/vdir\"."),
                                            QStringLiteral("75"), QStringLiteral("Steplets task store"), {},
                                            QStringLiteral("/d/steplets.log"), QStringLiteral("/d"));
    EXPECT_EQ(m.what, QStringLiteral("Cannot create the folder \"tasks\" in \"/d/vdir\"."));
    EXPECT_TRUE(m.advice.contains(QStringLiteral("/d/vdir")) && m.advice.contains(QStringLiteral("write"))) << m.advice.toStdString();
}


// --- The program from the outside ---

struct ProgramRun {
    bool ended = false;
    int exitCode = -1;
    QString output;
};

// Starts the program on the data folder `home` with `arguments` and waits for it to end by itself.
ProgramRun runProgram(const QString& home, QStringList arguments)
{
    QProcess program;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("XDG_STATE_HOME"), home + QStringLiteral("/state"));
    program.setProcessEnvironment(env);
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QStringLiteral(STEPLETS_DESKTOP_PROGRAM), QStringList{QStringLiteral("--home"), home} + arguments);
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

// A whole session played on the program's own windows as real input: it ends by itself, and what
// Undo took back is gone from the task folder. A failure ends it with status 1 and a log.
TEST(DesktopProgram, ProcessReviewAndUndoLeaveNoTaskAndAReportedFailureEndsWithStatusOneAndALog)
{
    test::TempDir home;
    const ProgramRun run = runProgram(home.path(), {"--time-card", "7", "--contact-id", "2", "--contact-name", "Ada Byrne",
                                                    "--play", QStringLiteral(STEPLETS_DESKTOP_SESSION)});
    ASSERT_TRUE(run.ended) << "the program did not end by itself:\n" << run.output.toStdString();
    EXPECT_EQ(run.exitCode, 0) << run.output.toStdString();
    const QDir tasks(home.file(QStringLiteral("vdir/tasks")));
    ASSERT_TRUE(tasks.exists());
    EXPECT_EQ(tasks.entryList({QStringLiteral("*.ics")}, QDir::Files), QStringList()) << "Undo left these behind";
    // The demo, the settings, the task folder and the log are the user's alone.
    EXPECT_EQ(test::notPrivate(home.path()), QStringList());

    test::TempDir spoiled;
    QFile link(spoiled.file(QStringLiteral("OVLink.db")));   // one database without the other is no first start
    ASSERT_TRUE(link.open(QIODevice::WriteOnly) && link.write("this is no database") > 0);
    link.close();
    const ProgramRun failed = runProgram(spoiled.path(), {"--play", QStringLiteral(STEPLETS_DESKTOP_CLOSE)});
    ASSERT_TRUE(failed.ended) << failed.output.toStdString();
    EXPECT_EQ(failed.exitCode, 1) << failed.output.toStdString();
    EXPECT_TRUE(failed.output.contains(QStringLiteral("OVLocal.db"))) << failed.output.toStdString();
    EXPECT_TRUE(QFile::exists(spoiled.file(QStringLiteral("steplets.log"))));
}

} // namespace
