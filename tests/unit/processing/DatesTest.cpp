// The dates of processed tasks: fixed dates rolled one unit at a time against the host's clock,
// distances from the moment of processing or from an anchor (asked, or common to a group), the
// recurrence of a template under its conditions, and what the grid shows of them.
#include "ProcessingFixture.h"

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {

class ProcessedDates : public ProcessingFixture {
protected:
    Date date(int r, const char* name) const { return storedRow(r)->get(QString::fromLatin1(name)).toDate(); }
    static RowValues fixed(const char* subject, RowValues extra)
    {
        RowValues row{{col::Subject, subject}, {col::DateType, 0}, {col::IsRecurring, false},
                      {col::Importance, 1}, {col::Status, 0}};
        for (const auto& [pos, v] : extra) row[pos] = v;
        return row;
    }
    static constexpr const char* kRunThenOK = R"([{"wait": 60}, {"form": "frmProcessTasks", "click": "cmdOK"}])";
    static constexpr const char* kAnchorPrompt =
        R"({"form": "frmPrompt", "date": "ActiveCalendar1", "value": "2026-05-01"}, {"form": "frmPrompt", "click": "OKButton"})";
};

} // namespace

TEST_F(ProcessedDates, FixedDatesComeToTheFirstOccurrenceNotInThePast)
{
    addTemplate(fixed("Annual filing", {{col::DueDate, at(2019, 4, 15, 17, 0)}, {col::StartDate, at(2019, 3, 1, 9, 0)},
                                        {col::ReminderTime, at(2019, 3, 16, 16, 0)}}));
    addTemplate(fixed("Weekly check", {{col::IsRecurring, true}, {col::RecurrenceType, 1}, {col::Interval, 2},
                                       {col::DayOfWeekMask, ol::olMonday}, {col::NoEndDate, true},
                                       {col::DueDate, at(2026, 2, 23, 9, 0)}, {col::ReminderTime, at(2026, 2, 23, 8, 0)},
                                       {col::PatternStartDate, at(2026, 2, 23)}}));
    addTemplate(fixed("No reminder", {{col::IsRecurring, false}, {col::DueDate, at(2026, 4, 30, 12, 0)},
                                      {col::ReminderTime, at(4501, 1, 1)}}));
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();

    EXPECT_EQ(date(1, "DueDate"), at(2026, 4, 15, 17, 0));
    EXPECT_EQ(date(1, "StartDate"), at(2027, 3, 1, 9, 0)) << "1 March has passed this year";
    EXPECT_EQ(date(1, "ReminderTime"), at(2026, 3, 16, 16, 0)) << "later today is not past";
    // A weekly template moves by whole weeks, whatever its interval, so the weekday stays.
    EXPECT_EQ(date(2, "DueDate"), at(2026, 3, 23, 9, 0));
    EXPECT_EQ(date(2, "DueDate").date().dayOfWeek(), Qt::Monday);
    auto pattern = storedRow(2)->GetRecurrencePattern();
    EXPECT_EQ(pattern->get("PatternStartDate").toDate(), at(2026, 3, 23));
    EXPECT_EQ(pattern->get("NoEndDate"), Value(true));
    EXPECT_EQ(pattern->get("Interval"), Value(2));

    EXPECT_EQ(cell(1, 1), "4/15/2026") << "the grid shows the due date the item holds";
    EXPECT_EQ(cell(1, 2), "3/16/2026");
    EXPECT_EQ(cell(2, 1), "3/23/2026");
    EXPECT_EQ(cell(3, 2), "1/1/4501") << "the store's mark for no date is shown as it is";
}

TEST_F(ProcessedDates, RelativeDistancesCountFromTheMomentEachRowIsMade)
{
    addTemplate(relative("Call back", {{col::DueDateOffset, 3 * 24 * 60}, {col::ReminderOffset, 0},
                                       {col::StartDateOffset, 0}, {col::ReminderSet, false}}));
    addTemplate(relative("Follow up", {{col::DueDateOffset, 0}, {col::ReminderOffset, -30}, {col::StartDateOffset, 60}}));
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();

    // The first tick comes one second after the show; each task is then paced for 2.1 seconds.
    const Date first = at(2026, 3, 16, 15, 30, 1);
    EXPECT_EQ(date(1, "DueDate"), at(2026, 3, 19, 15, 30, 1));
    EXPECT_EQ(date(1, "ReminderTime"), first) << "offset 0 is the present moment, reminder set or not";
    const Value start = storedRow(1)->get("StartDate");
    EXPECT_TRUE(start.isNull() || start.toDate().isNoDate()) << "offset 0 leaves the start to the store";

    const Date second = storedRow(2)->get("DueDate").toDate();
    EXPECT_GT(second.serial(), first.serial()) << "the present moment is asked anew for each row";
    EXPECT_EQ(Date::diff(QStringLiteral("n"), second, date(2, "StartDate")), 60);
    EXPECT_EQ(Date::diff(QStringLiteral("n"), date(2, "ReminderTime"), second), 30);
}

TEST_F(ProcessedDates, AnAnchorTemplateAsksForItsDateAndTheLaterOnesAskToo)
{
    addTemplate(RowValues{{col::Subject, "Closing"}, {col::DateType, 2}, {col::DueDateOffset, 2 * 24 * 60},
                          {col::ReminderOffset, 24 * 60}, {col::StartDateOffset, 0},
                          {col::AnchorDescription, "Closing date"}});
    // A fixed template after an asking one is asked as well, and takes the anchor it is given.
    addTemplate(fixed("Keys", {{col::DueDate, at(2030, 1, 1, 12, 0)}}));
    play((std::string("[") + kAnchorPrompt + ", " + kAnchorPrompt
          + R"(, {"form": "frmProcessTasks", "click": "cmdOK"}])").c_str());
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();

    int prompts = 0;
    for (const auto& e : host->events()) prompts += e.toObject().value("show").toString() == "frmPrompt";
    EXPECT_EQ(prompts, 2);
    EXPECT_EQ(date(1, "DueDate"), at(2026, 5, 3));
    EXPECT_EQ(date(1, "ReminderTime"), at(2026, 5, 2));
    EXPECT_EQ(date(2, "DueDate"), at(2030, 1, 1, 12, 0)) << "a stored date in the future stands";
    EXPECT_EQ(window->aEntryIDs.ubound(), 2);
}

TEST_F(ProcessedDates, AGroupsCommonAnchorNeedsNoDialog)
{
    addTemplate(RowValues{{col::Subject, "Move in"}, {col::DateType, 2}, {col::DueDateOffset, 7 * 24 * 60},
                          {col::ReminderOffset, 0}, {col::StartDateOffset, 0}});
    // Distances before the anchor.
    addTemplate(RowValues{{col::Subject, "Open the file"}, {col::DateType, 2}, {col::DueDateOffset, -2 * 24 * 60},
                          {col::ReminderOffset, -56 * 60}, {col::StartDateOffset, -3 * 24 * 60}});
    session().dPromptAnchorDate = at(2026, 6, 1);
    beforeShow = [](frmProcessTasks& w) { w.m_blnGroupAnchor = true; };
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_EQ(date(1, "DueDate"), at(2026, 6, 8));
    EXPECT_EQ(date(2, "StartDate"), at(2026, 5, 29));
    EXPECT_EQ(date(2, "DueDate"), at(2026, 5, 30));
    EXPECT_EQ(date(2, "ReminderTime"), at(2026, 5, 29, 16, 0));
    for (const auto& e : host->events()) EXPECT_NE(e.toObject().value("show").toString(), "frmPrompt");
    EXPECT_TRUE(session().dPromptAnchorDate.isZero()) << "the common answer goes at the end of the run";
}

TEST_F(ProcessedDates, RecurrenceIsWrittenUnderItsConditions)
{
    // Month-nth, relative: its Interval and an Instance under 6 are written, the pattern days count from the base date.
    addTemplate(relative("Board pack", {{col::IsRecurring, true}, {col::RecurrenceType, 3}, {col::Interval, 2},
                                        {col::Instance, 2}, {col::DayOfWeekMask, ol::olTuesday},
                                        {col::PatternEndOffset, 365}, {col::Regenerate, false}}));
    // Yearly, fixed: no Interval, MonthOfYear written; an end date with occurrences.
    addTemplate(fixed("Renewal", {{col::IsRecurring, true}, {col::RecurrenceType, 5}, {col::Interval, 4},
                                  {col::DayOfMonth, 10}, {col::MonthOfYear, 7}, {col::NoEndDate, false},
                                  {col::PatternEndDate, at(2035, 7, 10)}, {col::Occurrences, 10},
                                  {col::DueDate, at(2020, 7, 10, 9, 0)}, {col::PatternStartDate, at(2020, 7, 10)}}));
    // Year-nth with an Instance of 6: left out.
    addTemplate(relative("Audit", {{col::IsRecurring, true}, {col::RecurrenceType, 6}, {col::Instance, 6},
                                   {col::DayOfWeekMask, ol::olFriday}, {col::MonthOfYear, 0}}));
    // Daily, relative: the pattern's start and end are days from the base, not from the due date.
    addTemplate(relative("Plants", {{col::IsRecurring, true}, {col::RecurrenceType, 0}, {col::Interval, 2}, {col::DueDateOffset, 60},
                                    {col::PatternStartOffset, 1}, {col::PatternEndOffset, 30}}));
    // Monthly, fixed: rolled by months.
    addTemplate(fixed("Bank", {{col::IsRecurring, true}, {col::RecurrenceType, 2}, {col::Interval, 1}, {col::DayOfMonth, 15},
                               {col::NoEndDate, true}, {col::DueDate, at(2025, 11, 15, 12, 0)},
                               {col::PatternStartDate, at(2025, 11, 15)}}));
    // Weekly, fixed, with a count and an end date; its start is rolled past today, its due date is not.
    addTemplate(fixed("Stand-up", {{col::IsRecurring, true}, {col::RecurrenceType, 1}, {col::Interval, 1},
                                   {col::DayOfWeekMask, ol::olMonday | ol::olWednesday}, {col::NoEndDate, false},
                                   {col::Occurrences, 10}, {col::PatternEndDate, at(2026, 5, 1)},
                                   {col::DueDate, at(2026, 1, 5, 17, 0)}, {col::PatternStartDate, at(2026, 1, 5)}}));
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();

    auto monthly = storedRow(1)->GetRecurrencePattern();
    EXPECT_EQ(monthly->get("RecurrenceType"), Value(3));
    EXPECT_EQ(monthly->get("Interval"), Value(2)) << "unlike a yearly one, a Month-nth pattern takes the Interval";
    EXPECT_EQ(monthly->get("Instance"), Value(2));
    EXPECT_EQ(monthly->get("DayOfWeekMask"), Value(ol::olTuesday));
    EXPECT_EQ(monthly->get("PatternEndDate").toDate().date(), QDate(2027, 3, 16));

    auto yearly = storedRow(2)->GetRecurrencePattern();
    EXPECT_EQ(yearly->get("RecurrenceType"), Value(5));
    EXPECT_NE(yearly->get("Interval"), Value(4)) << "a yearly pattern never takes the Interval";
    EXPECT_EQ(yearly->get("MonthOfYear"), Value(7));
    EXPECT_EQ(yearly->get("DayOfMonth"), Value(10));
    EXPECT_EQ(yearly->get("Occurrences"), Value(10));
    EXPECT_EQ(yearly->get("PatternStartDate").toDate(), at(2026, 7, 10)) << "rolled by years";
    EXPECT_EQ(date(2, "DueDate"), at(2026, 7, 10, 9, 0));

    auto yearNth = storedRow(3)->GetRecurrencePattern();
    EXPECT_NE(yearNth->get("Instance"), Value(6)) << "an Instance of 6 or more is not written";

    auto daily = storedRow(4)->GetRecurrencePattern();
    const Date due = date(4, "DueDate");
    EXPECT_EQ(daily->get("RecurrenceType"), Value(0));
    EXPECT_EQ(daily->get("Interval"), Value(2));
    EXPECT_EQ(Date::diff(QStringLiteral("n"), due, daily->get("PatternStartDate").toDate()), 24 * 60 - 60);
    EXPECT_EQ(Date::diff(QStringLiteral("n"), due, daily->get("PatternEndDate").toDate()), 30 * 24 * 60 - 60);

    EXPECT_EQ(date(5, "DueDate"), at(2026, 4, 15, 12, 0));
    EXPECT_EQ(storedRow(5)->GetRecurrencePattern()->get("PatternStartDate").toDate(), at(2026, 4, 15));

    auto weekly = storedRow(6)->GetRecurrencePattern();
    EXPECT_EQ(date(6, "DueDate"), at(2026, 3, 16, 17, 0));
    EXPECT_EQ(weekly->get("PatternStartDate").toDate(), at(2026, 3, 23));
    EXPECT_EQ(weekly->get("NoEndDate"), Value(false));
    EXPECT_EQ(weekly->get("Occurrences"), Value(10));
    EXPECT_EQ(weekly->get("DayOfWeekMask"), Value(ol::olMonday | ol::olWednesday));
}
