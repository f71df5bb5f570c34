// The desktop program's own parts: its command line, the embedded default it lays out on first
// start, and the failure reporter's log file and message box.
#include "Desktop.h"
#include "HostOptions.h"
#include "FormView.h"
#include "QtUiHost.h"
#include "TempDir.h"
#include "WidgetSupport.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/StoreData.h"
#include "backends/vdir/DemoContacts.h"
#include "session/modDLLErrHandler.h"
#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QMessageBox>
#include <QTest>

using namespace steplets;
using namespace steplets::desktop;

namespace {

ParsedCommandLine parse(QStringList args)
{
    args.prepend(QStringLiteral("steplets"));
    return parseCommandLine(args);
}

// --- The command line ---

TEST(DesktopCommandLine, EachOptionSetsItsArgumentOfTheHostsCall)
{
    const ParsedCommandLine p = parse({"--time-card", "42", "--contact-id", "-3", "--user-name", "Ada Byrne",
                                       "--contact-term", "Client", "--job-order", "JO-7", "--manage-contacts",
                                       "--select-contact-by-account", "--user-folder-store", "S2", "--home", "/tmp/h",
                                       "--task-folder", "todo", "--description", "Audit"});
    ASSERT_EQ(p.outcome, ParsedCommandLine::Outcome::Run) << p.text.toStdString();
    const HostArguments& a = p.options.args;
    EXPECT_EQ(a.lTimeCardID, 42);
    EXPECT_EQ(a.sContactID, -3);
    EXPECT_EQ(a.sUserName, QStringLiteral("Ada Byrne"));
    EXPECT_EQ(a.sContactTerm, QStringLiteral("Client"));
    EXPECT_EQ(a.sJobOrder, QStringLiteral("JO-7"));
    EXPECT_TRUE(a.bManageContacts);
    EXPECT_TRUE(a.bSelectContactByAcct);
    EXPECT_EQ(a.sUserFldrSID.toText(), QStringLiteral("S2"));
    EXPECT_EQ(a.sTaskFolderEID, QStringLiteral("todo"));
    EXPECT_EQ(a.sDesc, QStringLiteral("Audit"));
    EXPECT_EQ(p.options.home, QStringLiteral("/tmp/h"));
}

TEST(DesktopCommandLine, WithoutOptionsItKeepsTemplatesAsTheDemoUser)
{
    const ParsedCommandLine p = parse({});
    ASSERT_EQ(p.outcome, ParsedCommandLine::Outcome::Run);
    EXPECT_EQ(p.options.args.lTimeCardID, 0);
    EXPECT_EQ(p.options.args.sUserEID, vdir::demoUser().entryId);
    EXPECT_EQ(p.options.args.sUserName, vdir::demoUser().fullName());
    EXPECT_FALSE(p.options.args.sTaskFolderEID.isEmpty());
    EXPECT_TRUE(p.options.home.isEmpty());
}

TEST(DesktopCommandLine, HelpListsEveryArgumentAndBadInputIsNamed)
{
    const ParsedCommandLine help = parse({"--help"});
    ASSERT_EQ(help.outcome, ParsedCommandLine::Outcome::Help);
    for (const char* name : {"--time-card", "--contact-id", "--user-name", "--contact-folder", "--contact-folder-store",
                             "--user-entry", "--user-folder-store", "--contact-name", "--select-contact-by-account",
                             "--provider", "--manage-contacts", "--contact-term", "--main-activity-term",
                             "--sub-activity-term", "--description", "--entry-type", "--category", "--main-activity",
                             "--sub-activity", "--job-order-term", "--job-order", "--task-folder", "--task-folder-store",
                             "--home"})
        EXPECT_TRUE(help.text.contains(QLatin1String(name))) << name;

    const ParsedCommandLine notNumber = parse({"--time-card", "seven"});
    EXPECT_EQ(notNumber.outcome, ParsedCommandLine::Outcome::Error);
    EXPECT_TRUE(notNumber.text.contains(QStringLiteral("--time-card")));
    EXPECT_TRUE(notNumber.text.contains(QStringLiteral("seven")));
    EXPECT_EQ(parse({"--contact-id", "99999999999"}).outcome, ParsedCommandLine::Outcome::Error);
    EXPECT_EQ(parse({"--no-such-option"}).outcome, ParsedCommandLine::Outcome::Error);
    EXPECT_EQ(parse({"stray"}).outcome, ParsedCommandLine::Outcome::Error);
}

// --- The embedded default ---

TEST(EmbeddedDefault, FirstStartLaysOutWhatTheAdminToolSeeds)
{
    test::TempDir home;
    ASSERT_TRUE(ensureEmbeddedDefault(home.path()));
    EXPECT_TRUE(QFile::exists(sqlcipher::fileOf(sqlcipher::Db::Local, home.path())));
    EXPECT_TRUE(QFile::exists(sqlcipher::fileOf(sqlcipher::Db::Link, home.path())));
    EXPECT_TRUE(sqlcipher::checkDatabases(home.path()).isEmpty());
    const QJsonObject dump = sqlcipher::dumpStore(home.path());
    EXPECT_FALSE(dump.value(QStringLiteral("local")).toObject().value(QStringLiteral("tblSteplets")).toArray().isEmpty());
    // Every demo contact has its card in the contact collection.
    const QDir cards(QDir(home.path()).filePath(QStringLiteral("vdir/contacts")));
    for (const vdir::DemoContact& c : vdir::demoContacts())
        EXPECT_TRUE(cards.exists(c.entryId + QStringLiteral(".vcf"))) << c.entryId.toStdString();
}

TEST(EmbeddedDefault, ANextStartLeavesTheDataAlone)
{
    test::TempDir home;
    ASSERT_TRUE(ensureEmbeddedDefault(home.path()));
    const QJsonObject before = sqlcipher::dumpStore(home.path());
    EXPECT_FALSE(ensureEmbeddedDefault(home.path()));
    EXPECT_EQ(sqlcipher::dumpStore(home.path()), before);
}

TEST(EmbeddedDefault, AHomeWithOneDatabaseIsNotReseeded)
{
    test::TempDir home;
    ASSERT_TRUE(ensureEmbeddedDefault(home.path()));
    QFile::remove(sqlcipher::fileOf(sqlcipher::Db::Link, home.path()));
    EXPECT_FALSE(ensureEmbeddedDefault(home.path()));
    EXPECT_FALSE(QFile::exists(sqlcipher::fileOf(sqlcipher::Db::Link, home.path())));
}

// --- Failure reports ---

TEST(DesktopReporter, TheUserReadsAPlainSentenceAndTheTrailIsBehindDetailsAndInTheLog)
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
    EXPECT_TRUE(what.contains(QStringLiteral("Division by zero")));
    EXPECT_FALSE(what.contains(QStringLiteral("Form_Load")));
    EXPECT_TRUE(advice.contains(log)) << advice.toStdString();
    EXPECT_TRUE(details.contains(QStringLiteral("frmSteplet: Form_Load:Line 30")));
    EXPECT_TRUE(details.contains(QStringLiteral("11")));
    // A store's own sentence already says what to do, and is shown as it stands.
    EXPECT_EQ(failureMessage({}, QStringLiteral("The database file /x/OVLink.db was not found. Create the databases."),
                             QStringLiteral("-2147467259"), {}, {}, log).what,
              QStringLiteral("The database file /x/OVLink.db was not found. Create the databases."));

    QFile file(log);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString text = QString::fromUtf8(file.readAll());
    for (const char* part : {"1.0.0", "Division by zero", "11", "Steplets", "frmSteplet: Form_Load:Line 30"})
        EXPECT_TRUE(text.contains(QLatin1String(part))) << part;
    EXPECT_EQ(text.count(QLatin1Char('\n')), 1) << "one line per report";
}

void spoilFile(const QString& path)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write("this is no database");
}

// A part of the data that cannot be used: the user reads which file and what to do about it.
struct Unusable {
    const char* name;
    std::function<void(const QString& home)> spoil;
    bool chooserFollows;
    QStringList says;          // in the message or the advice; "%home" stands for the data folder
};

class UnusableDataTest : public ::testing::TestWithParam<Unusable> {};

TEST_P(UnusableDataTest, TheMessageNamesTheFileAndWhatToDo)
{
    test::widgetApp();
    // Only the first failure of a process is reported; ctest runs each case in a process of its own.
    if (modDLLErrHandler::FailureCount() > 0) GTEST_SKIP() << "a failure was reported before in this process";
    const Unusable& c = GetParam();
    test::TempDir home, state;
    qputenv("XDG_STATE_HOME", state.path().toUtf8());
    c.spoil(home.path());
    HostOptions options = defaultHostOptions();
    options.home = home.path();
    auto host = std::make_shared<qt::QtUiHost>();
    QString said;
    test::Driver driver;
    driver.then("the report", [] { return test::shownWindow(QStringLiteral("FailureReport")); }, [&] {
        auto* box = static_cast<QMessageBox*>(test::shownWindow(QStringLiteral("FailureReport")));
        said = box->text() + QLatin1Char('\n') + box->informativeText();
        box->button(QMessageBox::Ok)->click();
    });
    if (c.chooserFollows)
        driver.then("the chooser", [&] { return !host->modalStack().empty() && host->viewOf(*host->modalStack().back()); },
                    [&] { host->viewOf(*host->modalStack().back())->close(); });
    driver.start();
    EXPECT_EQ(runSession(options, host), 1);
    EXPECT_TRUE(driver.finished());
    for (QString part : c.says) {
        part.replace(QStringLiteral("%home"), QDir::toNativeSeparators(home.path()));
        EXPECT_TRUE(said.contains(part)) << part.toStdString() << " not in: " << said.toStdString();
    }
    qunsetenv("XDG_STATE_HOME");
}

INSTANTIATE_TEST_SUITE_P(
    Parts, UnusableDataTest,
    ::testing::Values(
        Unusable{"SettingsFileIsAFolder",
                 [](const QString& home) { QDir().mkpath(home + QStringLiteral("/config/Brackenfell Software/Ordivane for Office.ini")); },
                 true, {"%home/config/Brackenfell Software/Ordivane for Office.ini", "not a folder", "default options"}},
        Unusable{"DatabaseIsNoDatabase", [](const QString& home) { spoilFile(home + QStringLiteral("/OVLocal.db")); },
                 false, {"%home/OVLocal.db", "OVLocal.db and OVLink.db, in %home", "backup", "demonstration data"}},
        // One database without the other is no first start: nothing is seeded.
        Unusable{"DatabaseIsMissing", [](const QString& home) { spoilFile(home + QStringLiteral("/OVLink.db")); },
                 false, {"%home/OVLocal.db", "in %home", "backup"}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(DesktopReporter, ATaskFolderThatCannotBeUsedIsNamedWithWhatToDo)
{
    const FailureMessage m = failureMessage(QStringLiteral("1.0.0"), QStringLiteral("Cannot create the folder \"tasks\" in \"/d/vdir\"."),
                                            QStringLiteral("75"), QStringLiteral("Steplets task store"), {},
                                            QStringLiteral("/d/steplets.log"), QStringLiteral("/d"));
    EXPECT_EQ(m.what, QStringLiteral("Cannot create the folder \"tasks\" in \"/d/vdir\"."));
    EXPECT_TRUE(m.advice.contains(QStringLiteral("/d/vdir"))) << m.advice.toStdString();
    EXPECT_TRUE(m.advice.contains(QStringLiteral("write"))) << m.advice.toStdString();
}

TEST(DesktopReporter, TheLogLiesInTheChosenDataFolderElseInTheStateDirectory)
{
    test::TempDir state;
    qputenv("XDG_STATE_HOME", state.path().toUtf8());
    HostOptions options = defaultHostOptions();
    EXPECT_TRUE(logFilePath(options).startsWith(state.path()));
    options.home = QStringLiteral("/data/steplets");
    EXPECT_EQ(logFilePath(options), QStringLiteral("/data/steplets/steplets.log"));
    qunsetenv("XDG_STATE_HOME");
}

} // namespace
