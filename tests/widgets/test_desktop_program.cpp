// The desktop program: its command line, the embedded default, the failure reporter, data it
// cannot use, and the program itself started as a user starts it.
#include "Desktop.h"
#include "FormView.h"
#include "HostOptions.h"
#include "QtUiHost.h"
#include "TempDir.h"
#include "WidgetSupport.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/StoreData.h"
#include "backends/vdir/DemoContacts.h"
#include "session/modDLLErrHandler.h"
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
        what = box->text();
        advice = box->informativeText();
        details = box->detailedText();
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

void spoilFile(const QString& path)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write("this is no database");
}

// A session of the program in a fresh home, on the Qt host, played by `driver`.
class DesktopSession : public ::testing::Test {
protected:
    void SetUp() override
    {
        test::widgetApp();
        qputenv("XDG_STATE_HOME", state.path().toUtf8());
        options = defaultHostOptions();
        options.home = home.path();
    }
    void TearDown() override { qunsetenv("XDG_STATE_HOME"); }
    int run(test::Driver& driver)
    {
        host = std::make_shared<qt::QtUiHost>();
        driver.start();
        const int status = runSession(options, host);
        EXPECT_TRUE(driver.finished());
        return status;
    }
    // The window the component waits on, when it is on the screen.
    qt::FormView* top() const { return host->modalStack().empty() ? nullptr : host->viewOf(*host->modalStack().back()); }
    bool chooserUp() const { return top() && top()->isVisible() && !test::shownWindow(QStringLiteral("About")); }
    void cancel() const { QTest::mouseClick(top()->widgetOf(*host->modalStack().back()->control(QStringLiteral("CancelButton"))), Qt::LeftButton); }

    test::TempDir home, state;
    HostOptions options;
    std::shared_ptr<qt::QtUiHost> host;
};

// A part of the data that cannot be used: the user reads which file and what to do about it.
struct Unusable {
    const char* name;
    const char* spoiled;       // under the data folder; made a folder when it ends in ".ini"
    bool chooserFollows;
    QStringList says;          // in the message or the advice; "%home" stands for the data folder
};

class UnusableData : public DesktopSession, public ::testing::WithParamInterface<Unusable> {};

TEST_P(UnusableData, TheMessageNamesTheFileAndWhatToDo)
{
    // Only the first failure of a process is reported; ctest runs each case in a process of its own.
    if (modDLLErrHandler::FailureCount() > 0) GTEST_SKIP() << "a failure was reported before in this process";
    const Unusable& c = GetParam();
    const QString spoiled = home.file(QLatin1String(c.spoiled));
    if (spoiled.endsWith(QLatin1String(".ini"))) QDir().mkpath(spoiled);
    else spoilFile(spoiled);
    QString said;
    test::Driver driver;
    driver.then("the report", [] { return test::shownWindow(QStringLiteral("FailureReport")); }, [&] {
        auto* box = static_cast<QMessageBox*>(test::shownWindow(QStringLiteral("FailureReport")));
        said = box->text() + QLatin1Char('\n') + box->informativeText();
        box->button(QMessageBox::Ok)->click();
    });
    if (c.chooserFollows) driver.then("the chooser", [&] { return top(); }, [&] { top()->close(); });
    EXPECT_EQ(run(driver), 1);
    for (QString part : c.says) {
        part.replace(QStringLiteral("%home"), QDir::toNativeSeparators(home.path()));
        EXPECT_TRUE(said.contains(part)) << part.toStdString() << " not in: " << said.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Parts, UnusableData,
    ::testing::Values(Unusable{"SettingsFileIsAFolder", "config/Brackenfell Software/Ordivane for Office.ini", true,
                               {"%home/config/Brackenfell Software/Ordivane for Office.ini", "not a folder", "default options"}},
                      Unusable{"DatabaseIsNoDatabase", "OVLocal.db", false,
                               {"%home/OVLocal.db", "OVLocal.db and OVLink.db, in %home", "backup", "demonstration data"}},
                      // One database without the other is no first start: nothing is seeded.
                      Unusable{"DatabaseIsMissing", "OVLink.db", false, {"%home/OVLocal.db", "in %home", "backup"}}),
    [](const auto& info) { return std::string(info.param.name); });

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
    spoilFile(spoiled.file(QStringLiteral("OVLink.db")));
    const ProgramRun failed = runProgram(spoiled.path(), {"--play", QStringLiteral(STEPLETS_DESKTOP_CLOSE)});
    ASSERT_TRUE(failed.ended) << failed.output.toStdString();
    EXPECT_EQ(failed.exitCode, 1) << failed.output.toStdString();
    EXPECT_TRUE(failed.output.contains(QStringLiteral("OVLocal.db"))) << failed.output.toStdString();
    EXPECT_TRUE(QFile::exists(spoiled.file(QStringLiteral("steplets.log"))));
}

} // namespace
