// What a run leaves: grid rows, counters, the time card's marks and tblTasks rows, skipped rows
// after a Cancel, assigned tasks sent or discarded, review by double click, Undo, the close box
// refused during a run, and a run that fails midway.
#include "ProcessingFixture.h"
#include "backends/vdir/TaskCalendar.h"
#include <QFile>
#include <QUuid>

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {

class ProcessedResults : public ProcessingFixture {
protected:
    void timeCard()
    {
        SessionContext& s = session();
        s.lTimeCardID = 42;
        s.sMainActivityTerm = "Matter";
        s.sMainActivity = "Smith v Jones";
        s.sSubActivityTerm = "";
        s.sSubActivity = "Drafting";
    }
    static RowValues asking(const char* subject)
    {
        return relative(subject, {{col::FillIn1, "Prompt for user input"}, {col::FillIn2, "Subject field from template"},
                                  {col::UserPrompt1, "Reference?"}});
    }
    static std::string answer(const char* text)
    {
        return std::string(R"({"form": "frmPrompt", "type": "txtUserInput", "text": ")") + text
            + R"("}, {"form": "frmPrompt", "click": "OKButton"})";
    }
    // A task as its file holds it, marks with their type and folder-field flag included.
    vdir::TaskData onFile(const QString& entryId) const
    {
        QFile f(vdirRoot() + QStringLiteral("/tasks/") + entryId + QStringLiteral(".ics"));
        EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << f.fileName().toStdString();
        return vdir::readTaskCalendar(f.readAll(), nullptr).value_or(vdir::TaskData{});
    }
    static constexpr const char* kCancel = R"({"form": "frmPrompt", "click": "CancelButton"})";
    static constexpr const char* kRunThenOK = R"([{"wait": 60}, {"form": "frmProcessTasks", "click": "cmdOK"}])";
};

} // namespace

TEST_F(ProcessedResults, ATimeCardStampsEachSavedTaskAndRecordsItInTblTasks)
{
    timeCard();
    addTemplate(relative("Draft"));
    addTemplate(relative("Review"));
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();

    ASSERT_EQ(taskFiles().size(), 2);
    const auto rows = taskRows();
    ASSERT_EQ(rows.size(), 2u);
    for (int r = 1; r <= 2; ++r) {
        auto task = storedRow(r);
        // Text marks; the term marks are folder fields, the item's own id is not; no mark for an empty term.
        const QList<vdir::UserPropertyData> marks{{"OrdivaneID", 1, false, Value(task->EntryID())},
                                                  {"Matter", 1, true, Value("Smith v Jones")}};
        EXPECT_EQ(onFile(task->EntryID()).userProperties, marks);
        EXPECT_EQ(rows[static_cast<std::size_t>(r - 1)], std::make_pair(task->EntryID(), qint32(42)));
        EXPECT_EQ(cell(r, 0), r == 1 ? "Draft" : "Review") << "the grid shows the template's subject";
    }
    EXPECT_EQ(panel(1), "Processed:  2");
    EXPECT_EQ(panel(2), "Saved:  2");
    EXPECT_EQ(panel(3), "Skipped:  0");
    EXPECT_EQ(window->hdrText.Caption(), "Double-click a task to review the Outlook task.");
    EXPECT_FALSE(window->ProgressBar1.Visible());
    EXPECT_FALSE(window->isLoaded()) << "cmdOK closed the window";
}

TEST_F(ProcessedResults, WithoutATimeCardThereAreNoMarksAndNoRows)
{
    addTemplate(relative("Draft"));
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_EQ(storedRow(1)->UserProperties().Count(), 0);
    EXPECT_TRUE(taskRows().empty());
}

TEST_F(ProcessedResults, ACancelInTheSecondOfThreePromptsSkipsThatTemplateOnly)
{
    addTemplate(asking("First"));
    addTemplate(asking("Second"));
    addTemplate(asking("Third"));
    play(("[" + answer("A-1") + ", " + kCancel + ", " + answer("C-3")
          + R"(, {"form": "frmProcessTasks", "click": "cmdOK"}])").c_str());
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();

    EXPECT_EQ(taskFiles().size(), 2);
    EXPECT_TRUE(storedRow(1)->Subject().contains("A-1"));
    EXPECT_EQ(cell(2, 0), "Second (Skipped)");
    EXPECT_TRUE(window->aEntryIDs[2].isEmpty());
    EXPECT_TRUE(storedRow(3)->Subject().contains("C-3"));
    EXPECT_EQ(panel(1), "Processed:  3");
    EXPECT_EQ(panel(2), "Saved:  2");
    EXPECT_EQ(panel(3), "Skipped:  1");
}

TEST_F(ProcessedResults, AllCancelledLeavesNothingToUndo)
{
    addTemplate(asking("First"));
    addTemplate(asking("Second"));
    play((std::string("[") + kCancel + ", " + kCancel + R"(, {"form": "frmProcessTasks", "snapshot": true},)"
          + R"( {"form": "frmProcessTasks", "click": "cmdOK"}])").c_str());
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_TRUE(taskFiles().isEmpty());
    EXPECT_EQ(cell(1, 0), "First (Skipped)");
    EXPECT_EQ(cell(2, 0), "Second (Skipped)");
    EXPECT_EQ(window->hdrText.Caption(), "Click the OK button to exit.");
    EXPECT_FALSE(window->cmdUndo.Enabled());
    EXPECT_EQ(panel(2), "Saved:  0");
    EXPECT_EQ(panel(3), "Skipped:  2");
}

TEST_F(ProcessedResults, UndoYesRemovesTasksRowsAndGrid)
{
    timeCard();
    auto earlier = session().store().CreateRecordset();
    earlier->Open(QStringLiteral("SELECT * FROM tblTasks"), session().cnLink);
    earlier->AddNew();
    earlier->Fields(QStringLiteral("EntryID")).setValue("kept-task");
    earlier->Fields(QStringLiteral("TimeCardID")).setValue(1200);
    earlier->Update();
    addTemplate(relative("Draft"));
    addTemplate(relative("Review"));
    play(R"([{"wait": 60}, {"form": "frmProcessTasks", "click": "cmdUndo"},
             {"msgbox": "Yes", "title": "Undo Task Processing",
              "text": "Are you sure you want to delete all of the processed tasks?"},
             {"form": "frmProcessTasks", "click": "cmdOK"}])");
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_TRUE(taskFiles().isEmpty());
    EXPECT_EQ(taskRows(), (std::vector<std::pair<QString, qint32>>{{"kept-task", 1200}})) << "only this run's rows go";
    for (int r = 1; r <= 2; ++r)
        for (int c = 0; c < 4; ++c) EXPECT_EQ(cell(r, c), "") << r << "," << c;
    EXPECT_EQ(panel(1), "Processed:  2") << "the first panel stays";
    EXPECT_EQ(panel(2), "Saved:  None");
    EXPECT_EQ(panel(3), "Skipped:  2");
    EXPECT_FALSE(window->cmdUndo.Enabled());
    EXPECT_EQ(window->hdrText.Caption(), "Click the OK button to exit.");
}

TEST_F(ProcessedResults, UndoNoKeepsEverything)
{
    timeCard();
    addTemplate(relative("Draft"));
    play(R"([{"wait": 60}, {"form": "frmProcessTasks", "click": "cmdUndo"}, {"msgbox": "No"},
             {"form": "frmProcessTasks", "click": "cmdOK"}])");
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_EQ(taskFiles().size(), 1);
    EXPECT_EQ(taskRows().size(), 1u);
    EXPECT_EQ(cell(1, 0), "Draft");
    EXPECT_TRUE(window->cmdUndo.Enabled());
}

TEST_F(ProcessedResults, AnAssignedTaskSentIsSavedAndTheWindowComesBack)
{
    addTemplate(relative("Delegate", {{col::PromptForAssignee, "True"}}));
    addTemplate(relative("Silent"));
    play(R"([{"item": {"set": {"Subject": "Delegate to Ben", "To": "ben@okafor-eng.example"}, "close": "send"}},
             {"form": "frmProcessTasks", "click": "cmdOK"}])");
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_EQ(displays(), 1);
    EXPECT_EQ(shows(), 1) << "not the last template: made visible again, no new modal show";
    EXPECT_EQ(taskFiles().size(), 2);
    EXPECT_EQ(storedRow(1)->Subject(), "Delegate to Ben");
    EXPECT_EQ(onFile(window->aEntryIDs[1]).To, "ben@okafor-eng.example");
    EXPECT_TRUE(onFile(window->aEntryIDs[1]).assigned);
    EXPECT_FALSE(onFile(window->aEntryIDs[2]).assigned) << "the plain task after it is not assigned";
    EXPECT_EQ(panel(2), "Saved:  2");
}

TEST_F(ProcessedResults, ALastAssignedTaskDiscardedIsDeletedAndTheWindowIsShownAgain)
{
    timeCard();
    addTemplate(relative("Silent"));
    addTemplate(relative("Delegate", {{col::PromptForAssignee, "True"}}));
    play(R"([{"item": {"close": "discard"}}, {"form": "frmProcessTasks", "click": "cmdOK"}])");
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_EQ(shows(), 2) << "after the last template it stays hidden until the run shows it";
    EXPECT_EQ(taskFiles().size(), 1);
    EXPECT_EQ(taskRows().size(), 1u);
    EXPECT_EQ(cell(2, 0), "Delegate (Skipped)");
    EXPECT_EQ(panel(2), "Saved:  1");
    EXPECT_EQ(panel(3), "Skipped:  1");
    EXPECT_FALSE(window->isLoaded());
}

TEST_F(ProcessedResults, ADoubleClickOpensASavedTaskAndNothingForASkippedRow)
{
    addTemplate(relative("Open me"));
    addTemplate(asking("Skip me"));
    play((std::string("[") + kCancel + R"(, {"form": "frmProcessTasks", "dblclick": "MSHFlexGrid1", "row": 1},
             {"item": {"close": "discard"}},
             {"form": "frmProcessTasks", "dblclick": "MSHFlexGrid1", "row": 2},
             {"form": "frmProcessTasks", "dblclick": "MSHFlexGrid1", "row": 9},
             {"form": "frmProcessTasks", "click": "cmdOK"}])").c_str());
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_EQ(displays(), 1);
    QString shown;
    for (const auto& e : host->events())
        if (e.toObject().contains("display")) shown = e.toObject().value("display").toObject().value("EntryID").toString();
    EXPECT_EQ(shown, window->aEntryIDs[1]);
    EXPECT_EQ(shows(), 2) << "shown modally again from the double click";
    EXPECT_FALSE(window->isLoaded()) << "one OK ends both shows";
}

TEST_F(ProcessedResults, TheCloseBoxIsRefusedDuringARunAndAcceptedAfter)
{
    addTemplate(relative("Draft"));
    addTemplate(relative("Review"));
    // The first close comes in the first task's pause; had it been taken, the second could not be played.
    play(R"([{"wait": 2}, {"form": "frmProcessTasks", "close": true}, {"wait": 10},
             {"form": "frmProcessTasks", "close": true}])");
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_EQ(taskFiles().size(), 2) << "the run went on to its end";
    EXPECT_FALSE(window->isLoaded());
}

// A run that fails at its second row, by a value the item refuses or by the task collection
// vanishing just before that task's first save: the first task and its row stay, the run stops.
struct Midway {
    const char* name;
    const char* location;
    RowValues second;
    bool collectionGoes;
};
class RunFailingMidway : public ProcessedResults, public ::testing::WithParamInterface<Midway> {};

TEST_P(RunFailingMidway, StopsTheRunAtThatRow)
{
    const Midway& c = GetParam();
    const QString gone = vdirRoot() + QStringLiteral("/gone");
    if (c.collectionGoes)
        entryIds = [this, gone, n = 0]() mutable {
            if (++n == 2) QDir().rename(vdirRoot() + QStringLiteral("/tasks"), gone);
            return QUuid::createUuid().toString(QUuid::WithoutBraces);
        };
    timeCard();
    addTemplate(relative("First"));
    addTemplate(relative("Second", c.second));
    addTemplate(relative("Third"));
    play(kRunThenOK);

    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_TRUE(sink.failures[0].location.contains(c.location)) << sink.failures[0].location.toStdString();
    // The first task and its row; nothing of the second, not even a temporary file; no third.
    const QStringList files = c.collectionGoes ? QDir(gone).entryList(QDir::Files) : taskFiles();
    ASSERT_EQ(files.size(), 1);
    EXPECT_EQ(files[0], window->aEntryIDs[1] + ".ics");
    EXPECT_EQ(taskRows().size(), 1u);
    EXPECT_EQ(taskRows()[0].first, window->aEntryIDs[1]);
    EXPECT_TRUE(window->aEntryIDs[2].isEmpty());
    EXPECT_EQ(cell(3, 0), "Third") << "later rows are not made";
    EXPECT_TRUE(window->ProgressBar1.Visible()) << "the end of the run was not reached";
    EXPECT_FALSE(window->isLoaded()) << "cmdOK stays usable";
}

INSTANTIATE_TEST_SUITE_P(
    , RunFailingMidway,
    ::testing::Values(Midway{"RefusedValue", "X:frmProcessTasks: CreateTaskFromTemplate5:Line ",
                             {{col::PercentComplete, 150}}, false},
                      Midway{"CollectionGone", "\r\nX:frmProcessTasks: CreateTaskFromTemplate6:Line ", {}, true}),
    [](const auto& info) { return std::string(info.param.name); });
