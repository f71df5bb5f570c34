// Processing runs on real stores: the dates of the tasks and their recurrence, the contacts
// linked in the three modes and their passes, and what a run leaves behind: properties, grid and
// counters, time-card marks, Cancel, assignment, review, Undo, the close box, a failure midway.
#include "ProcessingFixture.h"
#include "platform/SafeTaskItem.h"
#include <QUuid>

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {
using Processed = ProcessingFixture;
const char* const kAnchorPrompt =
    R"({"form": "frmPrompt", "date": "ActiveCalendar1", "value": "2026-05-01"}, {"form": "frmPrompt", "click": "OKButton"}, )";
} // namespace

TEST_F(Processed, FixedDatesRollForwardAndRecurrenceIsWrittenUnderItsConditions)
{
    addTemplate(fixed("Annual filing", {{col::DueDate, at(2019, 4, 15, 17, 0)}, {col::StartDate, at(2019, 3, 1, 9, 0)},
                                        {col::ReminderTime, at(2019, 3, 16, 16, 0)}}));
    addTemplate(fixed("No reminder", {{col::DueDate, at(2026, 4, 30, 12, 0)}, {col::ReminderTime, at(4501, 1, 1)}}));
    // Weekly, fixed: moved by whole weeks, whatever its interval.
    addTemplate(fixed("Weekly check", {{col::IsRecurring, true}, {col::RecurrenceType, 1}, {col::Interval, 2},
                                       {col::DayOfWeekMask, ol::olMonday}, {col::NoEndDate, true},
                                       {col::DueDate, at(2026, 2, 23, 9, 0)}, {col::PatternStartDate, at(2026, 2, 23)}}));
    // Month-nth, relative: its Interval and an Instance under 6 are written, its count is not.
    addTemplate(relative("Board pack", {{col::IsRecurring, true}, {col::RecurrenceType, 3}, {col::Interval, 2}, {col::Instance, 2},
                                        {col::DayOfWeekMask, ol::olTuesday}, {col::NoEndDate, false}, {col::Occurrences, 3}}));
    // Yearly, fixed: no Interval, MonthOfYear written, rolled by years; an end date with occurrences.
    addTemplate(fixed("Renewal", {{col::IsRecurring, true}, {col::RecurrenceType, 5}, {col::Interval, 4}, {col::DayOfMonth, 10},
                                  {col::MonthOfYear, 7}, {col::NoEndDate, false}, {col::PatternEndDate, at(2035, 7, 10)},
                                  {col::Occurrences, 10}, {col::PatternStartDate, at(2020, 7, 10)}}));
    // Year-nth with an Instance of 6: left out.
    addTemplate(relative("Audit", {{col::IsRecurring, true}, {col::RecurrenceType, 6}, {col::Instance, 6},
                                   {col::DayOfWeekMask, ol::olFriday}, {col::MonthOfYear, 0}}));
    // Daily, relative: the pattern's start and end are days from the base, not from the due date.
    addTemplate(relative("Plants", {{col::IsRecurring, true}, {col::RecurrenceType, 0}, {col::Interval, 2}, {col::DueDateOffset, 60},
                                    {col::PatternStartOffset, 1}, {col::PatternEndOffset, 30}}));
    ASSERT_TRUE(play(kRunThenOK));
    auto pattern = [this](int r, const char* name) { return storedRow(r)->GetRecurrencePattern()->get(QString::fromLatin1(name)); };

    EXPECT_EQ(date(1, "DueDate"), at(2026, 4, 15, 17, 0));
    EXPECT_EQ(date(1, "StartDate"), at(2027, 3, 1, 9, 0)) << "1 March has passed this year";
    EXPECT_EQ(date(1, "ReminderTime"), at(2026, 3, 16, 16, 0)) << "later today is not past";
    EXPECT_EQ(cell(1, 1), "4/15/2026") << "the grid shows the due date the item holds";
    EXPECT_EQ(cell(2, 2), "1/1/4501") << "the store's mark for no date is shown as it is";

    EXPECT_EQ(date(3, "DueDate"), at(2026, 3, 23, 9, 0));
    EXPECT_EQ(pattern(3, "PatternStartDate").toDate(), at(2026, 3, 23));

    EXPECT_EQ(pattern(4, "Interval"), Value(2)) << "unlike a yearly one, a Month-nth pattern takes the Interval";
    EXPECT_EQ(pattern(4, "Instance"), Value(2));
    EXPECT_NE(pattern(4, "Occurrences"), Value(3)) << "the count is not restored for a relative or anchor template";

    EXPECT_NE(pattern(5, "Interval"), Value(4)) << "a yearly pattern never takes the Interval";
    EXPECT_EQ(pattern(5, "MonthOfYear"), Value(7));
    EXPECT_EQ(pattern(5, "Occurrences"), Value(10));
    EXPECT_EQ(pattern(5, "PatternStartDate").toDate(), at(2026, 7, 10));

    EXPECT_NE(pattern(6, "Instance"), Value(6)) << "an Instance of 6 or more is not written";

    const Date due = date(7, "DueDate");
    EXPECT_EQ(pattern(7, "Interval"), Value(2));
    EXPECT_EQ(Date::diff(QStringLiteral("n"), due, pattern(7, "PatternStartDate").toDate()), 24 * 60 - 60);
    EXPECT_EQ(Date::diff(QStringLiteral("n"), due, pattern(7, "PatternEndDate").toDate()), 30 * 24 * 60 - 60);

}

TEST_F(Processed, RelativeDistancesCountFromTheMomentEachRowIsMade)
{
    addTemplate(relative("Call back", {{col::DueDateOffset, 3 * 24 * 60}, {col::ReminderSet, false}}));
    addTemplate(relative("Follow up", {{col::DueDateOffset, 0}, {col::ReminderOffset, -30}, {col::StartDateOffset, 60}}));
    ASSERT_TRUE(play(kRunThenOK));

    // The first tick comes one second after the show.
    const Date first = at(2026, 3, 16, 15, 30, 1);
    EXPECT_EQ(date(1, "DueDate"), at(2026, 3, 19, 15, 30, 1));
    EXPECT_EQ(date(1, "ReminderTime"), first) << "offset 0 is the present moment, reminder set or not";
    EXPECT_TRUE(prop(1, "StartDate").isNull() || date(1, "StartDate").isNoDate()) << "offset 0 leaves the start to the store";

    const Date second = date(2, "DueDate");
    EXPECT_GT(second.serial(), first.serial()) << "the present moment is asked anew for each row";
    EXPECT_EQ(Date::diff(QStringLiteral("n"), second, date(2, "StartDate")), 60);
    EXPECT_EQ(Date::diff(QStringLiteral("n"), date(2, "ReminderTime"), second), 30);
}

TEST_F(Processed, AnAnchorIsAskedForEachAskingTemplateOrTakenFromTheGroupsCommonAnswer)
{
    const RowValues anchored = relative("Closing", {{col::DateType, 2}, {col::DueDateOffset, 2 * 24 * 60},
                                                    {col::StartDateOffset, -3 * 24 * 60}});
    addTemplate(anchored);
    // A fixed template after an asking one is asked as well, and takes the anchor it is given.
    addTemplate(fixed("Keys", {{col::DueDate, at(2030, 1, 1, 12, 0)}}));
    ASSERT_TRUE(play(std::string("[") + kAnchorPrompt + kAnchorPrompt + kOK));
    EXPECT_EQ(date(1, "DueDate"), at(2026, 5, 3));
    EXPECT_EQ(date(1, "StartDate"), at(2026, 4, 28)) << "a distance before the anchor";
    EXPECT_EQ(date(2, "DueDate"), at(2030, 1, 1, 12, 0)) << "a stored date in the future stands";

    // A group's common anchor needs no dialog (the script answers none) and goes at the end of the run.
    resetRun();
    addTemplate(anchored);
    session().dPromptAnchorDate = at(2026, 6, 1);
    beforeShow = [](frmProcessTasks& w) { w.m_blnGroupAnchor = true; };
    ASSERT_TRUE(play(kRunThenOK));
    EXPECT_EQ(date(1, "DueDate"), at(2026, 6, 3));
    EXPECT_TRUE(session().dPromptAnchorDate.isZero());
}

// The contact of the session, or mode one's chosen contacts, linked to the task and named in the
// grid; the user linked on top by each of the two settings, so twice without a contact.
TEST_F(Processed, LinksAndTheirTextFollowTheModeTheContactsAndTheUserSettings)
{
    // In `shown` an EntryID stands for its card's FileAs.
    struct Case { const char* name; int mode; const char* contact; std::initializer_list<const char*> chosen; bool linkUser;
                  QStringList links; const char* shown; };
    const Case cases[] = {
        {"no contact", 0, "", {}, false, {}, ""},
        {"no contact, user asked twice", 0, "", {}, true, {"c-morgan", "c-morgan"}, "Test User"},
        {"one contact and the user", 0, "c-ada", {}, true, {"c-ada", "c-morgan"}, "c-ada"},
        {"mode one, three chosen", 1, "", {"c-clara", "c-ada", "c-ben"}, false, {"c-clara", "c-ada", "c-ben"}, "[Multiple]"},
        {"mode one, one chosen", 1, "", {"c-ben"}, false, {"c-ben"}, "c-ben"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        resetRun();
        session().iContactMode = Int16(c.mode);
        session().sContactEID = c.contact;
        session().iLinkUser = Int16(c.linkUser ? 1 : 0);
        session().iLinkUserIfNoContact = Int16(c.linkUser ? 1 : 0);
        if (c.chosen.size()) chooseContacts(c.chosen);
        addTemplate(relative("Letter"));
        ASSERT_TRUE(play(kRunThenOK));
        EXPECT_EQ(links(1), c.links);
        const QString shown = QString::fromLatin1(c.shown);
        EXPECT_EQ(cell(1, 3), shown.startsWith(QLatin1String("c-")) ? fileAs(c.shown) : shown);
    }
}

TEST_F(Processed, ModeTwoRunsEveryTemplateOncePerContactWithItsPromptsFirst)
{
    SessionContext& s = session();
    s.iContactMode = Int16(2);
    s.sContactEID = "c-grace";
    chooseContacts({"c-ada", "c-ben", "c-clara"});
    addTemplate(relative("Intake", {{col::DateType, 2}, {col::AnchorDescription, "Matter opened"},
                                    {col::FillIn1, "Prompt for user input"}, {col::UserPrompt1, "Matter number?"}}));
    addTemplate(relative("Engagement letter"));
    // Per contact: the first template asks, and so does the second, since the flags carry over.
    // The second contact's first dialog is cancelled.
    std::string steps = "[";
    for (const char* day : {"01", "02", "03"})
        for (int k = 0; k < 2; ++k) {
            steps += R"({"form": "frmPrompt", "snapshot": true}, )";
            if (day == std::string("02") && k == 0) {
                steps += kCancel;
                continue;
            }
            steps += std::string(R"({"form": "frmPrompt", "date": "ActiveCalendar1", "value": "2026-05-)") + day
                + R"("}, {"form": "frmPrompt", "type": "txtUserInput", "text": "M-)" + day
                + R"("}, {"form": "frmPrompt", "click": "OKButton"}, )";
        }
    ASSERT_TRUE(play(steps + kOK, 3));

    // Each pass's links are played by launch-separate-mode-run; here the grid names them.
    const char* order[] = {"c-ada", "c-ada", "c-ben", "c-ben", "c-clara", "c-clara"};
    for (int r : {1, 2, 4, 5, 6}) EXPECT_EQ(cell(r, 3), fileAs(order[r - 1])) << "row " << r;
    // The Cancel skips that contact's first template only, not the pass nor the later passes.
    EXPECT_EQ(cell(3, 0), "Intake (Skipped)") << "pass 2 begins at grid row 3";
    EXPECT_EQ(cell(4, 0), "Engagement letter");
    EXPECT_EQ(date(1, "DueDate"), at(2026, 5, 2));
    EXPECT_EQ(date(5, "DueDate"), at(2026, 5, 4)) << "the third pass takes its own anchor";
    EXPECT_EQ(s.sContactEID, "c-grace") << "the contact of the session is put back";

    // Only the first dialog of each pass names its contact; each pass shows its prompts before its tasks.
    QStringList prompts, headers;
    for (const auto& e : host->events()) {
        if (e.toObject().value("show").toString() == "frmPrompt") prompts << e.toObject().value("at").toString();
        const QJsonObject snap = e.toObject().value("snapshot").toObject();
        if (snap.value("form").toString() == "frmPrompt") headers << QJsonDocument(snap.value("controls").toObject()).toJson();
    }
    ASSERT_EQ(prompts.size(), 6);
    ASSERT_EQ(headers.size(), 6);
    for (int k = 0; k < 6; k += 2)
        EXPECT_EQ(std::pair(headers[k].contains(fileAs(order[k])), headers[k + 1].contains(fileAs(order[k]))), std::pair(true, false)) << k;
    EXPECT_EQ(prompts[0], prompts[1]) << "no task of a pass is made between its prompts";
    EXPECT_NE(prompts[1], prompts[2]) << "the second contact's prompts come after the first one's tasks";
}

TEST_F(Processed, EachTaskTakesTheStoredPropertiesAndATimeCardStampsItAndRecordsItInTblTasks)
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

    // Text marks; the term marks are folder fields, the item's own id is not; no mark for an empty term.
    const QString id = window->aEntryIDs[2];
    const QList<vdir::UserPropertyData> marks{{"OrdivaneID", 1, false, Value(id)}, {"Matter", 1, true, Value("Smith v Jones")}};
    EXPECT_EQ(onFile(id).userProperties, marks);
    ASSERT_EQ(taskRows().size(), 2u);
    EXPECT_EQ(taskRows()[1], std::make_pair(id, qint32(42)));
    EXPECT_EQ(cell(2, 0), "Review") << "the grid shows the template's subject";
    EXPECT_EQ(panel(2), "Saved:  2");
    EXPECT_EQ(window->hdrText.Caption(), "Double-click a task to review the Outlook task.");
    EXPECT_FALSE(window->ProgressBar1.Visible());
    EXPECT_FALSE(window->isLoaded()) << "cmdOK closed the window";
}

// Without a time card; each task made is paced on the host's clock, a skipped one is not.
TEST_F(Processed, ACancelSkipsThatTemplateOnlyAndAllCancelledLeavesNothingToUndo)
{
    addTemplate(asking("First"));
    addTemplate(asking("Second"));
    addTemplate(asking("Third"));
    ASSERT_TRUE(play("[" + answer("A-1") + kCancel + answer("C-3") + kOK));
    EXPECT_EQ(taskFiles().size(), 2);
    EXPECT_TRUE(storedRow(1)->Subject().contains("A-1"));
    EXPECT_EQ(cell(2, 0), "Second (Skipped)");
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
    EXPECT_EQ(window->hdrText.Caption(), "Click the OK button to exit.");
    EXPECT_FALSE(window->cmdUndo.Enabled());
    EXPECT_EQ(panel(2), "Saved:  0");
}

TEST_F(Processed, UndoYesRemovesThisRunsTasksRowsAndGridAndNoKeepsEverything)
{
    timeCard();
    addTemplate(relative("Draft"));
    addTemplate(relative("Review"));
    for (const bool yes : {false, true}) {
        SCOPED_TRACE(yes);
        window.reset();
        ASSERT_TRUE(play(std::string(R"([{"wait": 60}, {"form": "frmProcessTasks", "click": "cmdUndo"}, {"msgbox": ")")
                         + (yes ? "Yes" : "No") + R"(", "title": "Undo Task Processing",
                           "text": "Are you sure you want to delete all of the processed tasks?"}, )" + kOK));
        // No keeps the first run's two tasks and rows; Yes takes only the second run's away.
        EXPECT_EQ(taskFiles().size(), 2);
        EXPECT_EQ(taskRows().size(), 2u);
        EXPECT_EQ(cell(1, 0), yes ? "" : "Draft");
        EXPECT_EQ(window->cmdUndo.Enabled(), !yes);
    }
    for (int c = 0; c < 4; ++c) EXPECT_EQ(cell(2, c), "") << c;
    EXPECT_EQ(panel(2), "Saved:  None");
    EXPECT_EQ(panel(3), "Skipped:  2");
}

// An assigned task sent before the last template: the window is made visible again; the last
// one discarded: deleted, and the window stays hidden until the run shows it.
TEST_F(Processed, AnAssignedTaskIsSavedWhenSentAndDeletedWhenDiscarded)
{
    timeCard();
    addTemplate(relative("Delegate", {{col::PromptForAssignee, "True"}}));
    addTemplate(relative("Silent"));
    addTemplate(relative("Last", {{col::PromptForAssignee, "True"}}));
    ASSERT_TRUE(play(R"([{"item": {"set": {"Subject": "Delegate to Ben", "To": "ben@okafor-eng.example"}, "close": "send"}},
                        {"item": {"close": "discard"}}, )" + std::string(kOK)));
    EXPECT_EQ(count("show", "frmProcessTasks"), 2);
    EXPECT_EQ(taskFiles().size(), 2);
    EXPECT_EQ(taskRows().size(), 2u);
    EXPECT_EQ(storedRow(1)->Subject(), "Delegate to Ben");
    EXPECT_EQ(onFile(window->aEntryIDs[1]).To, "ben@okafor-eng.example");
    EXPECT_TRUE(onFile(window->aEntryIDs[1]).assigned);
    EXPECT_FALSE(onFile(window->aEntryIDs[2]).assigned) << "the plain task after it is not assigned";
    EXPECT_EQ(cell(3, 0), "Last (Skipped)");
}

TEST_F(Processed, ADoubleClickOpensASavedTaskAndNothingForASkippedRow)
{
    addTemplate(relative("Open me"));
    addTemplate(asking("Skip me"));
    ASSERT_TRUE(play(std::string("[") + kCancel + R"({"form": "frmProcessTasks", "dblclick": "MSHFlexGrid1", "row": 1},
             {"item": {"close": "discard"}},
             {"form": "frmProcessTasks", "dblclick": "MSHFlexGrid1", "row": 2}, )" + kOK));
    EXPECT_EQ(firstEvent(*host, QStringLiteral("display")).value("EntryID").toString(), window->aEntryIDs[1]);
    EXPECT_EQ(count("show", "frmProcessTasks"), 2) << "shown modally again from the double click";
    EXPECT_FALSE(window->isLoaded()) << "one OK ends both shows";
}

TEST_F(Processed, TheCloseBoxIsRefusedDuringARunAndAcceptedAfter)
{
    addTemplate(relative("Draft"));
    addTemplate(relative("Review"));
    // The first close comes in the first task's pause; had it been taken, the second could not be played.
    ASSERT_TRUE(play(R"([{"wait": 2}, {"form": "frmProcessTasks", "close": true}, {"wait": 10},
                        {"form": "frmProcessTasks", "close": true}])"));
    EXPECT_EQ(taskFiles().size(), 2) << "the run went on to its end";
    EXPECT_FALSE(window->isLoaded());
}

// A run whose task collection vanishes just before the second task's first save: the first
// task and its row stay, the run stops there and reports it.
TEST_F(Processed, ARunFailingMidwayStopsAtThatRow)
{
    const QString gone = vdirRoot() + QStringLiteral("/gone");
    entryIds = [this, gone, n = 0]() mutable {
        if (++n == 2) QDir().rename(vdirRoot() + QStringLiteral("/tasks"), gone);
        return QUuid::createUuid().toString(QUuid::WithoutBraces);
    };
    timeCard();
    addTemplate(relative("First"));
    addTemplate(relative("Second"));
    addTemplate(relative("Third"));
    play(kRunThenOK);

    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_TRUE(sink.failures[0].location.contains("\r\nX:frmProcessTasks: CreateTaskFromTemplate6:Line "))
        << sink.failures[0].location.toStdString();
    // The first task and its row; nothing of the second, not even a temporary file; no third.
    EXPECT_EQ(QDir(gone).entryList(QDir::Files), QStringList{window->aEntryIDs[1] + ".ics"});
    ASSERT_EQ(taskRows().size(), 1u);
    EXPECT_EQ(taskRows()[0].first, window->aEntryIDs[1]);
    EXPECT_EQ(cell(3, 0), "Third") << "later rows are not made";
    EXPECT_TRUE(window->ProgressBar1.Visible()) << "the end of the run was not reached";
    EXPECT_FALSE(window->isLoaded()) << "cmdOK stays usable";
}
