// The dates of processed tasks: fixed dates rolled one unit at a time against the host's clock,
// distances from the moment of processing or from an anchor (asked, or common to a group), the
// recurrence of a template under its conditions, and what the grid shows of them.
#include "ProcessingFixture.h"

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {
using ProcessedDates = ProcessingFixture;
const char* const kAnchorPrompt =
    R"({"form": "frmPrompt", "date": "ActiveCalendar1", "value": "2026-05-01"}, {"form": "frmPrompt", "click": "OKButton"}, )";
} // namespace

TEST_F(ProcessedDates, FixedDatesRollForwardAndRecurrenceIsWrittenUnderItsConditions)
{
    addTemplate(fixed("Annual filing", {{col::DueDate, at(2019, 4, 15, 17, 0)}, {col::StartDate, at(2019, 3, 1, 9, 0)},
                                        {col::ReminderTime, at(2019, 3, 16, 16, 0)}}));
    addTemplate(fixed("No reminder", {{col::DueDate, at(2026, 4, 30, 12, 0)}, {col::ReminderTime, at(4501, 1, 1)}}));
    // Weekly, fixed: moved by whole weeks, whatever its interval.
    addTemplate(fixed("Weekly check", {{col::IsRecurring, true}, {col::RecurrenceType, 1}, {col::Interval, 2},
                                       {col::DayOfWeekMask, ol::olMonday}, {col::NoEndDate, true},
                                       {col::DueDate, at(2026, 2, 23, 9, 0)}, {col::PatternStartDate, at(2026, 2, 23)}}));
    // Month-nth, relative: its Interval and an Instance under 6 are written, the pattern days count from the base date.
    addTemplate(relative("Board pack", {{col::IsRecurring, true}, {col::RecurrenceType, 3}, {col::Interval, 2},
                                        {col::Instance, 2}, {col::DayOfWeekMask, ol::olTuesday},
                                        {col::PatternEndOffset, 365}, {col::Regenerate, false}}));
    // Yearly, fixed: no Interval, MonthOfYear written, rolled by years; an end date with occurrences.
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
    ASSERT_TRUE(play(kRunThenOK));
    auto pattern = [this](int r, const char* name) { return storedRow(r)->GetRecurrencePattern()->get(QString::fromLatin1(name)); };

    EXPECT_EQ(date(1, "DueDate"), at(2026, 4, 15, 17, 0));
    EXPECT_EQ(date(1, "StartDate"), at(2027, 3, 1, 9, 0)) << "1 March has passed this year";
    EXPECT_EQ(date(1, "ReminderTime"), at(2026, 3, 16, 16, 0)) << "later today is not past";
    EXPECT_EQ(cell(1, 1), "4/15/2026") << "the grid shows the due date the item holds";
    EXPECT_EQ(cell(1, 2), "3/16/2026");
    EXPECT_EQ(cell(2, 2), "1/1/4501") << "the store's mark for no date is shown as it is";

    EXPECT_EQ(date(3, "DueDate"), at(2026, 3, 23, 9, 0));
    EXPECT_EQ(pattern(3, "PatternStartDate").toDate(), at(2026, 3, 23));
    EXPECT_EQ(pattern(3, "NoEndDate"), Value(true));
    EXPECT_EQ(cell(3, 1), "3/23/2026");

    EXPECT_EQ(pattern(4, "Interval"), Value(2)) << "unlike a yearly one, a Month-nth pattern takes the Interval";
    EXPECT_EQ(pattern(4, "Instance"), Value(2));
    EXPECT_EQ(pattern(4, "PatternEndDate").toDate().date(), QDate(2027, 3, 16));

    EXPECT_NE(pattern(5, "Interval"), Value(4)) << "a yearly pattern never takes the Interval";
    EXPECT_EQ(pattern(5, "MonthOfYear"), Value(7));
    EXPECT_EQ(pattern(5, "Occurrences"), Value(10));
    EXPECT_EQ(pattern(5, "PatternStartDate").toDate(), at(2026, 7, 10));
    EXPECT_EQ(date(5, "DueDate"), at(2026, 7, 10, 9, 0));

    EXPECT_NE(pattern(6, "Instance"), Value(6)) << "an Instance of 6 or more is not written";

    const Date due = date(7, "DueDate");
    EXPECT_EQ(pattern(7, "Interval"), Value(2));
    EXPECT_EQ(Date::diff(QStringLiteral("n"), due, pattern(7, "PatternStartDate").toDate()), 24 * 60 - 60);
    EXPECT_EQ(Date::diff(QStringLiteral("n"), due, pattern(7, "PatternEndDate").toDate()), 30 * 24 * 60 - 60);

    EXPECT_EQ(date(8, "DueDate"), at(2026, 4, 15, 12, 0));
    EXPECT_EQ(pattern(8, "PatternStartDate").toDate(), at(2026, 4, 15));
}

TEST_F(ProcessedDates, RelativeDistancesCountFromTheMomentEachRowIsMade)
{
    addTemplate(relative("Call back", {{col::DueDateOffset, 3 * 24 * 60}, {col::ReminderSet, false}}));
    addTemplate(relative("Follow up", {{col::DueDateOffset, 0}, {col::ReminderOffset, -30}, {col::StartDateOffset, 60}}));
    ASSERT_TRUE(play(kRunThenOK));

    // The first tick comes one second after the show.
    const Date first = at(2026, 3, 16, 15, 30, 1);
    EXPECT_EQ(date(1, "DueDate"), at(2026, 3, 19, 15, 30, 1));
    EXPECT_EQ(date(1, "ReminderTime"), first) << "offset 0 is the present moment, reminder set or not";
    const Value start = prop(1, "StartDate");
    EXPECT_TRUE(start.isNull() || start.toDate().isNoDate()) << "offset 0 leaves the start to the store";

    const Date second = date(2, "DueDate");
    EXPECT_GT(second.serial(), first.serial()) << "the present moment is asked anew for each row";
    EXPECT_EQ(Date::diff(QStringLiteral("n"), second, date(2, "StartDate")), 60);
    EXPECT_EQ(Date::diff(QStringLiteral("n"), date(2, "ReminderTime"), second), 30);
}

TEST_F(ProcessedDates, AnAnchorIsAskedForEachAskingTemplateOrTakenFromTheGroupsCommonAnswer)
{
    const RowValues anchored{{col::Subject, "Closing"}, {col::DateType, 2}, {col::DueDateOffset, 2 * 24 * 60},
                             {col::ReminderOffset, 24 * 60}, {col::StartDateOffset, -3 * 24 * 60}};
    addTemplate(anchored);
    // A fixed template after an asking one is asked as well, and takes the anchor it is given.
    addTemplate(fixed("Keys", {{col::DueDate, at(2030, 1, 1, 12, 0)}}));
    ASSERT_TRUE(play(std::string("[") + kAnchorPrompt + kAnchorPrompt + kOK));
    EXPECT_EQ(count("show", "frmPrompt"), 2);
    EXPECT_EQ(date(1, "DueDate"), at(2026, 5, 3));
    EXPECT_EQ(date(1, "ReminderTime"), at(2026, 5, 2));
    EXPECT_EQ(date(1, "StartDate"), at(2026, 4, 28)) << "a distance before the anchor";
    EXPECT_EQ(date(2, "DueDate"), at(2030, 1, 1, 12, 0)) << "a stored date in the future stands";

    // A group's common anchor needs no dialog and goes at the end of the run.
    resetRun();
    addTemplate(anchored);
    session().dPromptAnchorDate = at(2026, 6, 1);
    beforeShow = [](frmProcessTasks& w) { w.m_blnGroupAnchor = true; };
    ASSERT_TRUE(play(kRunThenOK));
    EXPECT_EQ(count("show", "frmPrompt"), 0);
    EXPECT_EQ(date(1, "DueDate"), at(2026, 6, 3));
    EXPECT_EQ(date(1, "StartDate"), at(2026, 5, 29));
    EXPECT_TRUE(session().dPromptAnchorDate.isZero());
}
