// Plays small scenarios on real files: the order of items after a play, the outcomes other than
// a pass, and what a kept directory holds.
#include "Player.h"
#include "TempDir.h"
#include "Transcript.h"
#include "backends/vdir/TaskCalendar.h"
#include "backends/vdir/VdirFiles.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
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

class PlayTest : public ::testing::Test {
protected:
    // A task another session or client left in the play directory's task collection.
    QString writeTask(const QString& id, const QString& subject)
    {
        vdir::TaskData t;
        t.uid = id;
        t.Subject = subject;
        const QString file = QDir(ws.vdirRoot()).filePath("tasks/" + id + ".ics");
        QDir().mkpath(QFileInfo(file).path());
        vdir::writeFileAtomically(file, vdir::writeTaskCalendar(t));
        return file;
    }
    test::TempDir dir;
    Workspace ws{QDir(dir.path()).absolutePath()};
};

} // namespace

TEST_F(PlayTest, CreatedItemsFollowTheGivenOnesInTheOrderOfTheirFirstSave)
{
    writeTask("a-given", "given");
    writeTask("new-0001", "second saved");
    writeTask("new-0002", "first saved");
    writeTask("foreign", "put there by another client");
    const QJsonArray tasks = outlookAfter(ws, ItemOrder{{"a-given", "gone"}, {}, {"new-0002", "new-0001"}}).value("tasks").toArray();
    QStringList subjects;
    for (const QJsonValue& t : tasks) subjects << t.toObject().value("Subject").toString();
    EXPECT_EQ(subjects, (QStringList{"given", "first saved", "second saved", "put there by another client"}));
}

// An expectation that does not hold is exit 1 with the difference (the files under tests/scenarios
// play the ones that hold); a step left when the session ends cannot be played.
TEST_F(PlayTest, AnExpectationNotMetOrAStepLeftIsReportedWithWhatWentWrong)
{
    const PlayResult failed = play(scenarioOf(QStringLiteral(R"({%1, "expect": {"settings": {"Task Selection": 3}}})").arg(kClose)),
                                   dir.path());
    EXPECT_EQ(failed.exit, ExpectationFailed);
    EXPECT_EQ(failed.problem, "expectation not met: settings.Task Selection: missing; expected 3");

    // A failure while copying the arguments skips the whole session: no window ever waits.
    test::TempDir other;
    const PlayResult r = play(scenarioOf(R"({"host": {"sUserFldrSID": null},
        "script": [{"form": "frmSteplet", "close": true}], "expect": {"status": "ok"}})"), other.path());
    EXPECT_EQ(r.exit, CannotPlay);
    EXPECT_EQ(r.problem, "step 1 (close on frmSteplet) cannot be done: the session ended before it");
}

TEST_F(PlayTest, ASetUpThatCannotBeDoneNamesTheMember)
{
    const PlayResult unknownTable = play(scenarioOf(R"({"store": {"local": {"tblNope": [{}]}}, "script": []})"), dir.path());
    EXPECT_EQ(unknownTable.exit, CannotPlay);
    EXPECT_TRUE(unknownTable.problem.startsWith("store: ") && unknownTable.problem.contains("tblNope")) << unknownTable.problem.toStdString();
    EXPECT_FALSE(unknownTable.transcript);

    test::TempDir other;
    const PlayResult badProperty = play(scenarioOf(R"({"outlook": {"tasks": [{"Subjekt": "x"}]}, "script": []})"), other.path());
    EXPECT_EQ(badProperty.exit, CannotPlay);
    EXPECT_TRUE(badProperty.problem.startsWith("outlook.tasks[0].Subjekt: ")) << badProperty.problem.toStdString();

}

TEST_F(PlayTest, AKeptDirectoryKeepsTheItemsItHeld)
{
    // Another session's task under the name the first new task of this one would take.
    const QString earlier = writeTask("new-0001", "made in an earlier session");
    const QByteArray before = vdir::readWholeFile(earlier);

    const PlayResult r = play(scenarioFile("launch-link-mode-run.json"), dir.path());
    ASSERT_EQ(r.exit, Passed) << r.problem.toStdString();
    EXPECT_EQ(vdir::readWholeFile(earlier), before);
    const auto made = vdir::readTaskCalendar(vdir::readWholeFile(QDir(ws.vdirRoot()).filePath("tasks/new-0002.ics")), nullptr);
    ASSERT_TRUE(made);
    EXPECT_EQ(made->Subject, "Plain one");
}

