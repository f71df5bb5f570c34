// Saving a template: a real task in a vdir becomes a row of a real SQLCipher tblSteplets. The
// columns the authoring scenarios do not look at, the pattern or zeros, the distances with the
// today rule and the 31 Dec 2029 guards, the temporary task deleted, and a failure.
#include "TemplateFixture.h"
#include "templates/TemplateRow.h"
#include <optional>

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {

class SaveTemplate : public TemplateFixture {
protected:
    // The task the user filled in on the form, saved once as the form does.
    std::shared_ptr<ol::TaskItem> task(const std::map<QString, Value>& props)
    {
        auto item = taskFolder()->Items().Add();
        for (const auto& [name, v] : props) item->set(name, v);
        item->Save();
        return item;
    }
    void save(const std::shared_ptr<ol::TaskItem>& item, bool edit = false)
    {
        EditedTemplate().TemplateItem = item;
        EditedTemplate().ReferenceDate = moment;
        Bool16 bEdit(edit);
        SaveTemplateToDB(bEdit, clock());
    }
    void clearRows()
    {
        auto rs = openTemplates();
        for (long n = rs->RecordCount(); n > 0; --n) rs->Delete();
    }
    static qint64 minutesFromMoment(const Date& d)
    {
        const QDateTime from(QDate(2024, 3, 14), QTime(15, 30));
        return from.secsTo(d.toQDateTime()) / 60;
    }
};

} // namespace

TEST_F(SaveTemplate, ANewRowHoldsEveryPropertyOfTheTaskAndTheTaskIsDeleted)
{
    // Property of the task, its value, and the column that keeps it.
    const std::tuple<const char*, Value, int> kept[] = {
        {"ActualWork", Value(30), col::ActualWork},
        {"TotalWork", Value(90), col::TotalWork}, {"BillingInformation", Value("Fixed fee"), col::BillingInformation},
        {"Companies", Value("Byrne & Lowell"), col::Companies},
        {"Mileage", Value("12 km"), col::Mileage}, {"Role", Value("Reviewer"), col::Role},
        {"ReminderSoundFile", Value("/sounds/chime.wav"), col::ReminderSoundFile}, {"Importance", Value(2), col::Importance},
        {"Sensitivity", Value(2), col::Sensitivity}, {"Status", Value(1), col::Status},
        {"PercentComplete", Value(40), col::PercentComplete}, {"NoAging", Value(true), col::NoAging},
        {"ReminderSet", Value(true), col::ReminderSet}, {"ReminderPlaySound", Value(true), col::ReminderPlaySound},
        {"TeamTask", Value(true), col::TeamTask}, {"DueDate", Value(Date::fromParts(2024, 3, 20)), col::DueDate},
        {"StartDate", Value(Date::fromParts(2024, 3, 18)), col::StartDate},
        {"ReminderTime", Value(Date::fromParts(2024, 3, 19, 9, 0)), col::ReminderTime},
    };
    std::map<QString, Value> props;
    for (const auto& [name, v, pos] : kept) props[QString::fromLatin1(name)] = v;
    save(task(props));
    EXPECT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    EXPECT_TRUE(session().ErrorTrail.endsWith("\r\nX:modTasks: SaveTemplateToDB"));
    for (const auto& [name, v, pos] : kept) EXPECT_EQ(stored(pos), v) << name;
    EXPECT_EQ(stored(col::Complete), Value(false));
    EXPECT_EQ(taskFiles(), 0) << "the temporary task is deleted";
}

// Minutes from the moment (15:30) to each date; a start or due date of today is 0 rather than
// the distance to its midnight; no date is guarded, a start from 31 Dec 2029 on is kept as 0.
TEST_F(SaveTemplate, DateDistancesWithTheTodayRuleAndTheGuards)
{
    struct Case { const char* why; std::map<QString, Value> dates; std::optional<qint64> due, start, reminder; };
    const qint64 toNoDate = minutesFromMoment(Date::noDate());
    const Date far = Date::fromParts(2029, 12, 31);
    const Date near = Date::fromParts(2029, 12, 30);
    const Case cases[] = {
        {"due today", {{"DueDate", Value(Date::fromParts(2024, 3, 14))}}, 0, {}, {}},
        {"yesterday, start today, reminder this morning",
         {{"DueDate", Value(Date::fromParts(2024, 3, 13))}, {"StartDate", Value(Date::fromParts(2024, 3, 14))},
          {"ReminderTime", Value(Date::fromParts(2024, 3, 14, 8, 0))}},
         -(1440 + 930), 0, -450},
        {"undated: only the start is guarded", {}, toNoDate, 0, toNoDate},
        {"the start guard begins on 31 December 2029", {{"StartDate", Value(far)}, {"DueDate", Value(far)}},
         minutesFromMoment(far), 0, {}},
        {"a day before the guard", {{"StartDate", Value(near)}}, {}, minutesFromMoment(near), {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        clearRows();
        std::map<QString, Value> props = c.dates;
        props[QStringLiteral("Subject")] = Value(QString::fromLatin1(c.why));
        save(task(props));
        const std::pair<int, std::optional<qint64>> offsets[] = {
            {col::DueDateOffset, c.due}, {col::StartDateOffset, c.start}, {col::ReminderOffset, c.reminder}};
        for (const auto& [pos, minutes] : offsets) {
            if (minutes) { EXPECT_EQ(stored(pos), Value(*minutes)) << TemplateColumnName(pos).toStdString(); }
        }
    }
}

TEST_F(SaveTemplate, ARecurringTaskStoresItsPatternAndDayDistancesWithOnlyTheEndGuarded)
{
    auto item = task({{"Subject", "Weekly"}, {"DueDate", Date::fromParts(2024, 3, 18)}});
    auto p = item->GetRecurrencePattern();
    p->set("RecurrenceType", 1);
    p->set("Interval", 2);
    p->set("DayOfWeekMask", ol::olMonday | ol::olThursday);
    p->set("PatternStartDate", Date::fromParts(2024, 3, 18));
    p->set("PatternEndDate", Date::fromParts(2024, 4, 1));
    item->Save();
    save(item);

    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    // Day numbers minus a reference of 15:30: 3.35 and 17.35 days, made whole by the column.
    const std::pair<int, Value> pattern[] = {
        {col::IsRecurring, Value(true)}, {col::RecurrenceType, Value(1)}, {col::Interval, Value(2)},
        {col::DayOfWeekMask, Value(ol::olMonday | ol::olThursday)}, {col::NoEndDate, Value(false)},
        {col::PatternStartDate, Value(Date::fromParts(2024, 3, 18))}, {col::PatternEndDate, Value(Date::fromParts(2024, 4, 1))},
        {col::PatternStartOffset, Value(3)}, {col::PatternEndOffset, Value(17)}};
    for (const auto& [pos, v] : pattern) EXPECT_EQ(stored(pos), v) << TemplateColumnName(pos).toStdString();

    // An end on 31 Dec 2029 or later is kept as no end; a start that late is not guarded.
    clearRows();
    auto late = task({{"Subject", "Late pattern"}, {"DueDate", Date::fromParts(2030, 1, 7)}});
    late->GetRecurrencePattern()->set("PatternStartDate", Date::fromParts(2030, 1, 7));
    late->GetRecurrencePattern()->set("PatternEndDate", Date::fromParts(2030, 6, 3));
    late->Save();
    save(late);
    EXPECT_EQ(stored(col::PatternEndOffset), Value(0));
    EXPECT_EQ(stored(col::PatternStartOffset), Value(static_cast<qint32>(roundHalfEven(
                                                   Date::fromParts(2030, 1, 7).serial() - moment.serial()))));
}

// An edit keeps the old text where the new one is empty; a non-recurring task writes zeros over
// the earlier pattern.
TEST_F(SaveTemplate, AnEditKeepsTheOldTextWhereTheNewOneIsEmptyAndZerosAnEarlierPattern)
{
    const RowValues old{{col::Subject, "Kept"}, {col::Body, "Kept"}, {col::BillingInformation, "Kept"}, {col::Categories, "Kept"},
                        {col::Companies, "Kept"}, {col::Mileage, "Kept"}, {col::ReminderSoundFile, "Kept"}, {col::Role, "Kept"},
                        {col::UserPrompt1, "Kept"}, {col::AnchorDescription, "Kept"}, {col::PromptForAssignee, true},
                        {col::ActualWork, 45}, {col::FillIn1, "Current Date"}, {col::IsRecurring, true},
                        {col::RecurrenceType, 5}, {col::Interval, 1}, {col::MonthOfYear, 4}, {col::DayOfMonth, 15},
                        {col::NoEndDate, true}, {col::Regenerate, true}, {col::PatternStartDate, Date::fromParts(2020, 4, 15)},
                        {col::PatternEndDate, Date::fromParts(2030, 4, 15)}, {col::PatternStartOffset, 12}, {col::PatternEndOffset, 30}};
    addRow(old);
    save(task({}), true);

    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    for (const auto& [pos, v] : old) {
        if (v == Value("Kept")) { EXPECT_EQ(stored(pos), v) << TemplateColumnName(pos).toStdString(); }
    }
    EXPECT_EQ(stored(col::PromptForAssignee), Value(true));
    // The other columns follow the task and the options.
    EXPECT_EQ(stored(col::ActualWork), Value(0));
    EXPECT_EQ(stored(col::FillIn1), Value("[Empty]"));
    EXPECT_EQ(openTemplates()->RecordCount(), 1) << "an edit adds no row";
    for (int pos = col::DayOfMonth; pos <= col::Regenerate; ++pos) {
        EXPECT_FALSE(stored(pos).isNull()) << pos;
        EXPECT_EQ(stored(pos).doubleOrZero(), 0.0) << pos;
    }
    for (int pos : {int(col::PatternStartOffset), int(col::PatternEndOffset)}) EXPECT_EQ(stored(pos), Value(0)) << pos;
    EXPECT_EQ(stored(col::IsRecurring), Value(false));
}

// Distances that overflow (minutes from the year 100 to the no-date value do not fit 32 bits):
// one failure is reported, no row is written and the temporary task stays.
TEST_F(SaveTemplate, AFailureLeavesNoRowAndTheTemporaryTaskInItsFolder)
{
    EditedTemplate().TemplateItem = task({{"Subject", "Overflowing"}});
    EditedTemplate().ReferenceDate = Date::fromParts(100, 1, 1);
    Bool16 bEdit(false);
    SaveTemplateToDB(bEdit, clock());
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_EQ(sink.failures[0].number, 6);
    EXPECT_TRUE(sink.failures[0].location.contains("X:modTasks: SaveTemplateToDB:Line "));
    EXPECT_EQ(openTemplates()->RecordCount(), 0);
    EXPECT_EQ(taskFiles(), 1);
}
