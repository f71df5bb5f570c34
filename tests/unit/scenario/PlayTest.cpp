// Plays small scenarios on real files and reads the stores back independently of the transcript.
#include "Player.h"
#include "TempDir.h"
#include "Transcript.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/vdir/ContactCard.h"
#include "backends/vdir/TaskCalendar.h"
#include "backends/vdir/VdirFiles.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QSettings>
#include "QStringPrinting.h"
#include <gtest/gtest.h>

using namespace steplets;
using namespace steplets::scenario;

namespace {

// The chooser is the session's window; closing it ends the session.
const char* const kClose = R"("script": [{"form": "frmSteplet", "close": true}])";

// A file of tests/scenarios, without its expectations.
Scenario scenarioFile(const char* name)
{
    QFile f(QStringLiteral(STEPLETS_SCENARIOS_DIR "/") + QLatin1String(name));
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << name;
    QString error;
    auto s = parseScenario(f.readAll(), &error, QStringLiteral(STEPLETS_SCENARIOS_DIR));
    EXPECT_TRUE(s) << error.toStdString();
    if (!s) return Scenario();
    s->expect.reset();
    return *s;
}

Scenario scenarioOf(const QString& body)
{
    QString error;
    auto s = parseScenario(body.toUtf8(), &error);
    EXPECT_TRUE(s) << error.toStdString();
    return s ? *s : Scenario();
}

QJsonArray rows(const QJsonObject& t, const char* db, const char* table)
{
    return t.value("store").toObject().value(db).toObject().value(table).toArray();
}

class PlayTest : public ::testing::Test {
protected:
    test::TempDir dir;
    Workspace ws{QDir(dir.path()).absolutePath()};
};

} // namespace

TEST_F(PlayTest, StoreRowsKeepGivenIDsAndTheStoreAssignsTheRest)
{
    const PlayResult r = play(scenarioOf(QStringLiteral(R"({"store": {"local": {"tblTaskGroups": [
        {"GroupName": "Weekly", "CommonAnchor": true},
        {"ID": 7, "GroupName": "Audit", "Prompt": null},
        {"GroupName": "Month end"}]}}, %1})").arg(kClose)), dir.path());
    ASSERT_EQ(r.exit, Passed) << r.problem.toStdString();
    const QJsonArray groups = rows(*r.transcript, "local", "tblTaskGroups");
    ASSERT_EQ(groups.size(), 3);
    EXPECT_EQ(groups[0].toObject().value("ID").toInt(), 1);
    EXPECT_EQ(groups[0].toObject().value("CommonAnchor"), QJsonValue(true));
    EXPECT_EQ(groups[1].toObject().value("ID").toInt(), 7);
    EXPECT_TRUE(groups[1].toObject().value("Prompt").isNull());
    EXPECT_EQ(groups[2].toObject().value("ID").toInt(), 8);
    EXPECT_EQ(groups[2].toObject().value("GroupName").toString(), "Month end");
    // Both files are real encrypted databases in the play directory.
    EXPECT_TRUE(QFile::exists(sqlcipher::fileOf(sqlcipher::Db::Local, dir.path())));
    EXPECT_TRUE(sqlcipher::checkDatabases(dir.path()).isEmpty());
    EXPECT_TRUE(rows(*r.transcript, "link", "tblContacts").isEmpty());
}

TEST_F(PlayTest, SettingsAreWrittenToTheIniFileAndReadBack)
{
    const PlayResult r = play(scenarioOf(QStringLiteral(R"({"settings": {"Task Selection": 2, "Fill-In 2": "Date",
        "User Prompt 1": "12 days"}, %1})").arg(kClose)), dir.path());
    ASSERT_TRUE(r.transcript);
    QSettings ini(ws.settingsFile(), QSettings::IniFormat);
    EXPECT_EQ(ini.value("Steplets/Task Selection").toString(), "2");
    EXPECT_EQ(ini.value("Steplets/Fill-In 2").toString(), "Date");
    const QJsonObject settings = r.transcript->value("settings").toObject();
    EXPECT_EQ(settings.value("Task Selection"), QJsonValue(2));
    EXPECT_EQ(settings.value("Fill-In 2"), QJsonValue("Date"));
    EXPECT_EQ(settings.value("User Prompt 1"), QJsonValue("12 days"));
    // The component records where it lives; the file shows it.
    EXPECT_EQ(settings.value("Program Directory").toString(), ws.dir);
    EXPECT_EQ(ini.value("Steplets/Program Directory").toString(), ws.dir);
}

TEST_F(PlayTest, OutlookItemsAreRealFilesWithComputedProperties)
{
    const PlayResult r = play(scenarioOf(QStringLiteral(R"({"outlook": {"contacts": [
            {"EntryID": "c-ada", "FirstName": "Ada", "LastName": "Byrne", "CompanyName": "Acme", "Birthday": "1980-05-01T00:00:00"}],
        "tasks": [{"EntryID": "t-1", "Subject": "Call Ada", "DueDate": "2026-03-20T00:00:00", "Body": "notes",
                   "Links": ["c-ada"], "UserProperties": [{"name": "Job", "type": 1, "value": "J-7"}],
                   "RecurrencePattern": {"RecurrenceType": 0, "Interval": 2}}]}, %1})").arg(kClose)), dir.path());
    ASSERT_TRUE(r.transcript);
    const QString vcf = QDir(ws.vdirRoot()).filePath("contacts/c-ada.vcf");
    const QString ics = QDir(ws.vdirRoot()).filePath("tasks/t-1.ics");
    const auto card = vdir::readContactCard(vdir::readWholeFile(vcf), nullptr);
    ASSERT_TRUE(card);
    EXPECT_EQ(vdir::contactValue(*card, "FileAs").toText(), "Byrne, Ada");
    const auto task = vdir::readTaskCalendar(vdir::readWholeFile(ics), nullptr);
    ASSERT_TRUE(task);
    EXPECT_EQ(task->Subject, "Call Ada");
    ASSERT_TRUE(task->pattern);
    EXPECT_EQ(task->pattern->Interval, 2);

    const QJsonObject outlook = r.transcript->value("outlook").toObject();
    const QJsonObject contact = outlook.value("contacts").toArray().at(0).toObject();
    EXPECT_EQ(contact.value("EntryID").toString(), "c-ada");
    EXPECT_EQ(contact.value("FullName").toString(), "Ada Byrne");
    EXPECT_EQ(contact.value("FileAs").toString(), "Byrne, Ada");
    EXPECT_EQ(contact.value("Birthday").toString(), "1980-05-01T00:00:00");
    const QJsonObject t = outlook.value("tasks").toArray().at(0).toObject();
    EXPECT_EQ(t.value("DueDate").toString(), "2026-03-20T00:00:00");
    EXPECT_EQ(t.value("StartDate").toString(), "4501-01-01T00:00:00");
    EXPECT_EQ(t.value("Body").toString(), "notes");
    EXPECT_EQ(t.value("Links").toArray(), QJsonArray{"c-ada"});
    EXPECT_EQ(t.value("UserProperties").toArray().at(0).toObject().value("value").toString(), "J-7");
    EXPECT_EQ(t.value("RecurrencePattern").toObject().value("Interval").toInt(), 2);
    EXPECT_EQ(t.value("Assigned"), QJsonValue(false));
}

TEST_F(PlayTest, CreatedItemsFollowTheGivenOnesInTheOrderOfTheirFirstSave)
{
    QDir().mkpath(QDir(ws.vdirRoot()).filePath("tasks"));
    auto writeTask = [&](const QString& id, const QString& subject) {
        vdir::TaskData t;
        t.uid = id;
        t.Subject = subject;
        vdir::writeFileAtomically(QDir(ws.vdirRoot()).filePath("tasks/" + id + ".ics"), vdir::writeTaskCalendar(t));
    };
    writeTask("a-given", "given");
    writeTask("new-0001", "second saved");
    writeTask("new-0002", "first saved");
    writeTask("foreign", "put there by another client");
    const QJsonArray tasks = outlookAfter(ws, ItemOrder{{"a-given", "gone"}, {}, {"new-0002", "new-0001"}}).value("tasks").toArray();
    ASSERT_EQ(tasks.size(), 4);
    EXPECT_EQ(tasks[0].toObject().value("Subject").toString(), "given");
    EXPECT_EQ(tasks[1].toObject().value("Subject").toString(), "first saved");
    EXPECT_EQ(tasks[2].toObject().value("Subject").toString(), "second saved");
    EXPECT_EQ(tasks[3].toObject().value("EntryID").toString(), "foreign");
}

// An expectation that does not hold is exit 1 with the difference; the files under tests/scenarios
// play the ones that hold.
TEST_F(PlayTest, AnExpectationNotMetIsReportedWithItsDifference)
{
    const PlayResult failed = play(scenarioOf(QStringLiteral(R"({%1, "expect": {"settings": {"Task Selection": 3}}})").arg(kClose)),
                                   dir.path());
    EXPECT_EQ(failed.exit, ExpectationFailed);
    EXPECT_EQ(failed.problem, "expectation not met: settings.Task Selection: missing; expected 3");
}

TEST_F(PlayTest, AStepLeftWhenTheSessionEndsCannotBePlayed)
{
    // A failure while copying the arguments skips the whole session: no window ever waits.
    const PlayResult r = play(scenarioOf(R"({"host": {"sUserFldrSID": null},
        "script": [{"form": "frmSteplet", "close": true}], "expect": {"status": "ok"}})"), dir.path());
    EXPECT_EQ(r.exit, CannotPlay);
    EXPECT_EQ(r.problem, "step 1 (close on frmSteplet) cannot be done: the session ended before it");
    ASSERT_TRUE(r.transcript);
    EXPECT_EQ(r.transcript->value("status").toString(), r.problem);
    const QJsonObject report = r.transcript->value("events").toArray().at(0).toObject().value("report").toObject();
    EXPECT_EQ(report.value("number").toString(), "94");
    EXPECT_EQ(report.value("location").toString(), ":Line 60");
}

TEST_F(PlayTest, ASetUpThatCannotBeDoneNamesTheMember)
{
    const PlayResult unknownTable = play(scenarioOf(R"({"store": {"local": {"tblNope": [{}]}}, "script": []})"), dir.path());
    EXPECT_EQ(unknownTable.exit, CannotPlay);
    EXPECT_TRUE(unknownTable.problem.startsWith("store: ")) << unknownTable.problem.toStdString();
    EXPECT_TRUE(unknownTable.problem.contains("tblNope"));
    EXPECT_FALSE(unknownTable.transcript);

    test::TempDir other;
    const PlayResult badProperty = play(scenarioOf(R"({"outlook": {"tasks": [{"Subjekt": "x"}]}, "script": []})"), other.path());
    EXPECT_EQ(badProperty.exit, CannotPlay);
    EXPECT_TRUE(badProperty.problem.startsWith("outlook.tasks[0].Subjekt: ")) << badProperty.problem.toStdString();

    // A directory that already holds the databases is not played over.
    const PlayResult again = play(scenarioOf(R"({"script": []})"), other.path());
    EXPECT_EQ(again.exit, CannotPlay);
}

TEST_F(PlayTest, AKeptDirectoryKeepsTheItemsItHeld)
{
    // Another session's task under the name the first new task of this one would take.
    const QString earlier = QDir(ws.vdirRoot()).filePath("tasks/new-0001.ics");
    vdir::TaskData t;
    t.uid = "new-0001";
    t.Subject = "made in an earlier session";
    QDir().mkpath(QFileInfo(earlier).path());
    vdir::writeFileAtomically(earlier, vdir::writeTaskCalendar(t));
    const QByteArray before = vdir::readWholeFile(earlier);

    const PlayResult r = play(scenarioFile("launch-link-mode-run.json"), dir.path());
    ASSERT_EQ(r.exit, Passed) << r.problem.toStdString();
    EXPECT_EQ(vdir::readWholeFile(earlier), before);
    const auto made = vdir::readTaskCalendar(vdir::readWholeFile(QDir(ws.vdirRoot()).filePath("tasks/new-0002.ics")), nullptr);
    ASSERT_TRUE(made);
    EXPECT_EQ(made->Subject, "Plain one");
}

// The program as a user runs it: --keep leaves the stores, --out writes the transcript, and every
// file and folder the play makes is the user's alone.
TEST_F(PlayTest, AKeptPlayLeavesPrivateStoresAndWritesTheTranscript)
{
    const QString file = dir.file("close.json");
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(R"({"settings": {"Link User": 1}, "outlook": {"tasks": [{"EntryID": "t-1", "Subject": "Kept"}]},
                "script": [{"form": "frmSteplet", "close": true}], "expect": {"settings": {"Link User": 1}}})");
    f.close();
    const QString keep = dir.file("kept/stores");
    QProcess player;
    player.start(QStringLiteral(STEPLETS_SCENARIO_PLAYER), {file, "--keep", keep, "--out", dir.file("kept/transcript.json")});
    ASSERT_TRUE(player.waitForFinished(60000));
    ASSERT_EQ(player.exitCode(), 0) << player.readAllStandardError().toStdString();
    EXPECT_TRUE(player.readAllStandardOutput().isEmpty());
    EXPECT_TRUE(player.readAllStandardError().isEmpty());
    EXPECT_TRUE(QFile::exists(keep + "/OVLocal.db"));
    EXPECT_TRUE(QFile::exists(keep + "/OVLink.db"));
    EXPECT_TRUE(QFile::exists(keep + "/vdir/tasks/t-1.ics"));
    QFile transcript(dir.file("kept/transcript.json"));
    ASSERT_TRUE(transcript.open(QIODevice::ReadOnly));
    const QJsonObject t = QJsonDocument::fromJson(transcript.readAll()).object();
    EXPECT_EQ(t.value("status").toString(), "ok");
    EXPECT_EQ(t.value("outlook").toObject().value("tasks").toArray().at(0).toObject().value("Subject").toString(), "Kept");
    EXPECT_EQ(test::notPrivate(dir.file("kept")), QStringList());
}
