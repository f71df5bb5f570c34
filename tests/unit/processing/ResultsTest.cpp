// What a run leaves: the template's stored properties on each task, Null columns keeping the row
// before's value, grid rows and counters, the time card's marks and tblTasks rows, skipped rows
// after a Cancel and their pacing, assigned tasks sent or discarded, review by double click,
// Undo, the close box refused during a run, and a run that fails midway.
#include "ProcessingFixture.h"
#include "backends/vdir/TaskCalendar.h"
#include "platform/SafeTaskItem.h"
#include <QFile>
#include <QUuid>

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {

using TaskRows = std::vector<std::pair<QString, qint32>>;

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
    // A task as its file holds it, marks with their type and folder-field flag included.
    vdir::TaskData onFile(const QString& entryId) const
    {
        QFile f(vdirRoot() + QStringLiteral("/tasks/") + entryId + QStringLiteral(".ics"));
        EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << f.fileName().toStdString();
        return vdir::readTaskCalendar(f.readAll(), nullptr).value_or(vdir::TaskData{});
    }
};

} // namespace

TEST_F(ProcessedResults, EachTaskTakesTheStoredPropertiesAndATimeCardStampsItAndRecordsItInTblTasks)
{
    timeCard();
    addTemplate(relative("Draft", {{col::ActualWork, 30}, {col::TotalWork, 90}, {col::BillingInformation, "Client A"},
                                   {col::Body, "Bring the signed engagement letter."}, {col::Categories, "Legal"},
                                   {col::Companies, "Acme"}, {col::Importance, 2}, {col::Sensitivity, 2},
                                   {col::Status, 1}, {col::PercentComplete, 40}, {col::Role, "Lead"},
                                   {col::Mileage, "12 km"}, {col::ReminderSet, true}}));
    // Null where the first row had values; an empty text is a value, but one that is never written.
    addTemplate(RowValues{{col::Subject, "Review"}, {col::Categories, ""}});
    ASSERT_TRUE(play(kRunThenOK));

    const std::pair<const char*, Value> kept[] = {
        {"ActualWork", Value(30)}, {"TotalWork", Value(90)}, {"BillingInformation", Value("Client A")},
        {"Categories", Value("Legal")}, {"Companies", Value("Acme")}, {"Importance", Value(2)}, {"Sensitivity", Value(2)},
        {"Status", Value(1)}, {"PercentComplete", Value(40)}, {"Role", Value("Lead")}, {"Mileage", Value("12 km")}};
    for (const auto& [name, v] : kept) EXPECT_EQ(prop(1, name), v) << name;
    EXPECT_TRUE(prop(1, "ReminderSet").toBool());
    SafeTaskItem safe;
    safe.setItem(storedRow(1));
    EXPECT_EQ(safe.Body(), "Bring the signed engagement letter.");

    EXPECT_EQ(prop(2, "BillingInformation"), Value("Client A"));
    EXPECT_EQ(prop(2, "Importance"), Value(2));
    EXPECT_TRUE(prop(2, "Categories").textOrEmpty().isEmpty()) << "the empty text is not written: the store's default stays";
    // The date type and distances came along too: due a day after its own moment of processing.
    EXPECT_EQ(Date::diff(QStringLiteral("d"), at(2026, 3, 16), date(2, "DueDate")), 1);

    const auto rows = taskRows();
    ASSERT_EQ(rows.size(), 2u);
    for (int r = 1; r <= 2; ++r) {
        auto task = storedRow(r);
        // Text marks; the term marks are folder fields, the item's own id is not; no mark for an empty term.
        const QList<vdir::UserPropertyData> marks{{"OrdivaneID", 1, false, Value(task->EntryID())},
                                                  {"Matter", 1, true, Value("Smith v Jones")}};
        EXPECT_EQ(onFile(task->EntryID()).userProperties, marks);
        EXPECT_EQ(rows[static_cast<std::size_t>(r - 1)], std::make_pair(task->EntryID(), qint32(42)));
    }
    EXPECT_EQ(cell(2, 0), "Review") << "the grid shows the template's subject";
    EXPECT_EQ(panel(1), "Processed:  2");
    EXPECT_EQ(panel(2), "Saved:  2");
    EXPECT_EQ(window->hdrText.Caption(), "Double-click a task to review the Outlook task.");
    EXPECT_FALSE(window->ProgressBar1.Visible());
    EXPECT_FALSE(window->isLoaded()) << "cmdOK closed the window";
}

// Without a time card; each task made is paced on the host's clock, a skipped one is not.
TEST_F(ProcessedResults, ACancelSkipsThatTemplateOnlyAndAllCancelledLeavesNothingToUndo)
{
    addTemplate(asking("First"));
    addTemplate(asking("Second"));
    addTemplate(asking("Third"));
    ASSERT_TRUE(play("[" + answer("A-1") + kCancel + answer("C-3") + kOK));
    EXPECT_EQ(taskFiles().size(), 2);
    EXPECT_TRUE(storedRow(1)->Subject().contains("A-1"));
    EXPECT_EQ(cell(2, 0), "Second (Skipped)");
    EXPECT_TRUE(window->aEntryIDs[2].isEmpty());
    EXPECT_TRUE(storedRow(3)->Subject().contains("C-3"));
    EXPECT_EQ(panel(1), "Processed:  3");
    EXPECT_EQ(panel(3), "Skipped:  1");
    EXPECT_EQ(storedRow(1)->UserProperties().Count(), 0);
    EXPECT_TRUE(taskRows().empty());
    // One second to the first tick, then 21 ticks of 100 ms for each of the two tasks made.
    EXPECT_GE(host->clock().elapsedMs(), 1000 + 2 * 2100);
    EXPECT_LT(host->clock().elapsedMs(), 1000 + 3 * 2100);

    resetRun();
    addTemplate(asking("First"));
    addTemplate(asking("Second"));
    ASSERT_TRUE(play(std::string("[") + kCancel + kCancel + kOK));
    EXPECT_EQ(taskFiles().size(), 2) << "nothing new";
    EXPECT_EQ(cell(1, 0), "First (Skipped)");
    EXPECT_EQ(window->hdrText.Caption(), "Click the OK button to exit.");
    EXPECT_FALSE(window->cmdUndo.Enabled());
    EXPECT_EQ(panel(2), "Saved:  0");
}

TEST_F(ProcessedResults, UndoYesRemovesThisRunsTasksRowsAndGridAndNoKeepsEverything)
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
    for (const bool yes : {false, true}) {
        SCOPED_TRACE(yes);
        window.reset();
        ASSERT_TRUE(play(std::string(R"([{"wait": 60}, {"form": "frmProcessTasks", "click": "cmdUndo"}, {"msgbox": ")")
                         + (yes ? "Yes" : "No") + R"(", "title": "Undo Task Processing",
                           "text": "Are you sure you want to delete all of the processed tasks?"}, )" + kOK));
        // No keeps the first run's two tasks; Yes takes only the second run's away.
        EXPECT_EQ(taskFiles().size(), 2);
        EXPECT_EQ(taskRows().size(), 3u);
        EXPECT_EQ(taskRows()[0], std::make_pair(QString("kept-task"), qint32(1200)));
        EXPECT_EQ(cell(1, 0), yes ? "" : "Draft");
        EXPECT_EQ(window->cmdUndo.Enabled(), !yes);
    }
    for (int c = 0; c < 4; ++c) EXPECT_EQ(cell(2, c), "") << c;
    EXPECT_EQ(panel(1), "Processed:  2") << "the first panel stays";
    EXPECT_EQ(panel(2), "Saved:  None");
    EXPECT_EQ(panel(3), "Skipped:  2");
    EXPECT_EQ(window->hdrText.Caption(), "Click the OK button to exit.");
}

// An assigned task sent before the last template: the window is made visible again; the last
// one discarded: deleted, and the window stays hidden until the run shows it.
TEST_F(ProcessedResults, AnAssignedTaskIsSavedWhenSentAndDeletedWhenDiscarded)
{
    timeCard();
    addTemplate(relative("Delegate", {{col::PromptForAssignee, "True"}}));
    addTemplate(relative("Silent"));
    addTemplate(relative("Last", {{col::PromptForAssignee, "True"}}));
    ASSERT_TRUE(play(R"([{"item": {"set": {"Subject": "Delegate to Ben", "To": "ben@okafor-eng.example"}, "close": "send"}},
                        {"item": {"close": "discard"}}, )" + std::string(kOK)));
    EXPECT_EQ(count("display"), 2);
    EXPECT_EQ(count("show", "frmProcessTasks"), 2);
    EXPECT_EQ(taskFiles().size(), 2);
    EXPECT_EQ(taskRows().size(), 2u);
    EXPECT_EQ(storedRow(1)->Subject(), "Delegate to Ben");
    EXPECT_EQ(onFile(window->aEntryIDs[1]).To, "ben@okafor-eng.example");
    EXPECT_TRUE(onFile(window->aEntryIDs[1]).assigned);
    EXPECT_FALSE(onFile(window->aEntryIDs[2]).assigned) << "the plain task after it is not assigned";
    EXPECT_EQ(cell(3, 0), "Last (Skipped)");
    EXPECT_EQ(panel(2), "Saved:  2");
    EXPECT_EQ(panel(3), "Skipped:  1");
}

TEST_F(ProcessedResults, ADoubleClickOpensASavedTaskAndNothingForASkippedRow)
{
    addTemplate(relative("Open me"));
    addTemplate(asking("Skip me"));
    ASSERT_TRUE(play(std::string("[") + kCancel + R"({"form": "frmProcessTasks", "dblclick": "MSHFlexGrid1", "row": 1},
             {"item": {"close": "discard"}},
             {"form": "frmProcessTasks", "dblclick": "MSHFlexGrid1", "row": 2},
             {"form": "frmProcessTasks", "dblclick": "MSHFlexGrid1", "row": 9}, )" + kOK));
    ASSERT_EQ(count("display"), 1);
    EXPECT_EQ(firstEvent(*host, QStringLiteral("display")).value("EntryID").toString(), window->aEntryIDs[1]);
    EXPECT_EQ(count("show", "frmProcessTasks"), 2) << "shown modally again from the double click";
    EXPECT_FALSE(window->isLoaded()) << "one OK ends both shows";
}

TEST_F(ProcessedResults, TheCloseBoxIsRefusedDuringARunAndAcceptedAfter)
{
    addTemplate(relative("Draft"));
    addTemplate(relative("Review"));
    // The first close comes in the first task's pause; had it been taken, the second could not be played.
    ASSERT_TRUE(play(R"([{"wait": 2}, {"form": "frmProcessTasks", "close": true}, {"wait": 10},
                        {"form": "frmProcessTasks", "close": true}])"));
    EXPECT_EQ(taskFiles().size(), 2) << "the run went on to its end";
    EXPECT_FALSE(window->isLoaded());
}

// A run that fails at its second row, by a value the item refuses or by the task collection
// vanishing just before that task's first save: the first task and its row stay, the run stops.
struct Midway { const char* name; const char* location; RowValues second; bool collectionGoes; };
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
    ASSERT_EQ(taskRows().size(), 1u);
    EXPECT_EQ(taskRows()[0].first, window->aEntryIDs[1]);
    EXPECT_EQ(cell(3, 0), "Third") << "later rows are not made";
    EXPECT_TRUE(window->ProgressBar1.Visible()) << "the end of the run was not reached";
    EXPECT_FALSE(window->isLoaded()) << "cmdOK stays usable";
}

INSTANTIATE_TEST_SUITE_P(
    , RunFailingMidway,
    ::testing::Values(Midway{"RefusedValue", "X:frmProcessTasks: CreateTaskFromTemplate5:Line ", {{col::PercentComplete, 150}}, false},
                      Midway{"CollectionGone", "\r\nX:frmProcessTasks: CreateTaskFromTemplate6:Line ", {}, true}),
    [](const auto& info) { return std::string(info.param.name); });
