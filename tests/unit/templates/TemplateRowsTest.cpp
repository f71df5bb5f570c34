// A template between a real task in a vdir and a row of a real SQLCipher tblSteplets: saved (the
// columns the authoring scenarios do not look at, distances and their guards), back on a task for
// editing (the recurrence written is the processing tests' own), and the date rules' arithmetic.
#include "TemplateFixture.h"
#include "platform/SafeTaskItem.h"
#include "templates/DateRules.h"
#include "templates/TaskForEdit.h"
#include <optional>

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {

class TemplateRows : public TemplateFixture {
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
    std::shared_ptr<ol::TaskItem> edit()
    {
        Bool16 bEdit(true);
        CreateTaskFromTemplateForEdit(bEdit, clock());
        return EditedTemplate().TemplateItem;
    }
    Date date(const std::shared_ptr<ol::TaskItem>& item, const char* name) { return item->get(name).toDate(); }
    std::shared_ptr<ol::TaskItem> fromFile(const QString& entryId)
    {
        vdir::VdirConfig config;
        config.root = vdirRoot();
        auto fresh = vdir::openVdirStore(config, std::make_shared<NoDisplay>())->GetNamespace();
        return ol::asTask(fresh->GetItemFromID(entryId, QStringLiteral("store")));
    }
    static RowValues fixedRow(RowValues row)
    {
        row.insert({{col::Subject, "Annual review"}, {col::DateType, Int16(0)}, {col::IsRecurring, false}});
        return row;
    }
    static qint64 minutesFromMoment(const Date& d)
    {
        const QDateTime from(QDate(2024, 3, 14), QTime(15, 30));
        return from.secsTo(d.toQDateTime()) / 60;
    }
};
using SaveTemplate = TemplateRows;
modTasks::Clock standingAt(const Date& d)
{
    return [d] { return d; };
}
const Date kNow = Date::fromParts(2024, 3, 14, 15, 30);
using TaskForEdit = TemplateRows;

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
        {"TeamTask", Value(true), col::TeamTask}, {"ReminderTime", Value(Date::fromParts(2024, 3, 19, 9, 0)), col::ReminderTime},
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

// A fixed template's dates and pattern start go through the roll, weekly by whole weeks whatever
// the interval; the no-date value is kept, a Null date column gives the zero date, rolled.
TEST_F(TaskForEdit, AFixedTemplatesDatesAndPatternStartAreRolledForward)
{
    addRow(fixedRow({{col::IsRecurring, true}, {col::RecurrenceType, 1}, {col::Interval, 2},
                     {col::DayOfWeekMask, ol::olMonday}, {col::NoEndDate, true},
                     {col::DueDate, Date::fromParts(2024, 2, 26, 9, 0)}, {col::ReminderTime, Date::noDate()},
                     {col::PatternStartDate, Date::fromParts(2024, 2, 26)}}));
    auto item = edit();
    ASSERT_TRUE(item);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    EXPECT_EQ(date(item, "DueDate"), Date::fromParts(2024, 3, 18, 9, 0));
    EXPECT_TRUE(date(item, "ReminderTime").isNoDate());
    // Column 32 is Null: the zero date, rolled by weeks up to the present.
    EXPECT_EQ(date(item, "StartDate"), Date::fromParts(2024, 3, 16));
    EXPECT_TRUE(date(item, "DateCompleted").isZero()) << "a Null column 7 writes the zero date";
    EXPECT_EQ(item->GetRecurrencePattern()->get("PatternStartDate").toDate(), Date::fromParts(2024, 3, 18));
    EXPECT_TRUE(session().ErrorTrail.endsWith("\r\nX:modTasks: CreateTaskFromTemplateForEdit"));
}

// The options come from the row, except the anchor description, and Null ones keep what the
// dialog had; the task is saved, and its total work set after the save.
TEST_F(TaskForEdit, OptionsComeFromTheRowAndTheTaskIsSavedBeforeItsTotalWork)
{
    auto& t = EditedTemplate();
    t.FillIn2 = t.UserPrompt3 = t.AnchorDescription = "from the dialog";
    addRow(fixedRow({{col::FillIn1, "Current Date"}, {col::UserPrompt1, "Which quarter?"}, {col::PromptForAssignee, true},
                     {col::AnchorDescription, "from the row"}, {col::DueDate, Date::fromParts(2025, 1, 1)},
                     {col::TotalWork, 120}, {col::ActualWork, 30}, {col::Body, "Bring the file."}, {col::Categories, "Tax"},
                     {col::Importance, 2}, {col::Status, 1}, {col::TeamTask, true}}));
    auto item = edit();
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    EXPECT_EQ(QStringList({t.FillIn1, t.FillIn2, t.UserPrompt1, t.UserPrompt3, t.PromptForAssignee, t.AnchorDescription}),
              QStringList({"Current Date", "from the dialog", "Which quarter?", "from the dialog", "True", "from the dialog"}));
    EXPECT_EQ(taskFiles(), 1);
    EXPECT_EQ(item->get("TotalWork"), Value(120));
    EXPECT_FALSE(item->Saved()) << "the total work is a change the form opens with";
    auto onDisk = fromFile(item->EntryID());
    for (const auto& [name, v] : {std::pair<const char*, Value>{"TotalWork", 0}, {"ActualWork", 30}, {"Categories", "Tax"},
                                  {"Importance", 2}, {"TeamTask", true}})
        EXPECT_EQ(onDisk->get(name), v) << name;
    SafeTaskItem safe;
    safe.setItem(onDisk);
    EXPECT_EQ(safe.Body(), "Bring the file.");
}

// Only the first row of the filter is used; a missing task folder makes nothing but a report.
TEST_F(TaskForEdit, OnlyTheFirstRowOfTheFilterIsUsedAndAFailureMakesNothingButAReport)
{
    addRow(fixedRow({{col::Subject, "Not chosen"}, {col::DueDate, Date::fromParts(2025, 1, 1)}}));
    addRow(fixedRow({{col::Subject, "Chosen"}, {col::DueDate, Date::fromParts(2025, 1, 1)}}));
    session().rsTemplates->Fields(QStringLiteral("Tag")).setValue(Int16(-1));
    session().rsTemplates->Update();
    session().rsTemplates->Filter(QStringLiteral("Tag = -1"));
    auto item = edit();
    ASSERT_TRUE(item);
    EXPECT_EQ(item->Subject(), "Chosen");

    modTasks::ReSetModuleVariables();
    session().sTaskFolderEID = QStringLiteral("no-such-folder");
    EXPECT_FALSE(edit());
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_TRUE(sink.failures[0].location.contains("X:modTasks: CreateTaskFromTemplateForEdit:Line "));
    EXPECT_EQ(taskFiles(), 1);
}

TEST(RollUnit, FollowsTheRecurrenceTypeAndKeepsTheLastUnitForAnUnknownOne)
{
    EXPECT_EQ(RollUnit(false, 0, QStringLiteral("d")), "yyyy") << "not recurring rolls by years";
    const std::tuple<int, const char*, const char*> units[] = {
        {0, "", "d"}, {1, "", "ww"}, {2, "", "m"}, {3, "", "m"}, {5, "", "yyyy"}, {6, "", "yyyy"}, {4, "ww", "ww"}, {7, "", ""}};
    for (const auto& [type, last, unit] : units) EXPECT_EQ(RollUnit(true, type, QString::fromLatin1(last)), unit) << type;
}

// A past date advances to the first of its rhythm that is not past, time of day kept; each month
// is added to the date reached, so 31 Jan -> 29 Feb -> 29 Mar. The zero date of a Null column is
// rolled where the template's task is built.
TEST(RollForward, APastDateAdvancesToTheFirstOfItsRhythmThatIsNotPast)
{
    struct Case { const char* why; Date from; const char* unit; Date now; Date rolled; };
    const Case cases[] = {
        {"passed this year", Date::fromParts(2021, 3, 1), "yyyy", kNow, Date::fromParts(2025, 3, 1)},
        {"earlier today has passed", Date::fromParts(2024, 3, 14, 9, 0), "d", kNow, Date::fromParts(2024, 3, 15, 9, 0)},
        {"later today", Date::fromParts(2024, 3, 14, 18, 0), "d", kNow, Date::fromParts(2024, 3, 14, 18, 0)},
        {"the present moment", kNow, "yyyy", kNow, kNow},
        {"no date", Date::noDate(), "d", kNow, Date::noDate()},
        {"monthly from 31 Jan", Date::fromParts(2024, 1, 31), "m", Date::fromParts(2024, 3, 15), Date::fromParts(2024, 3, 29)},
    };
    for (const Case& c : cases) EXPECT_EQ(RollForward(c.from, QString::fromLatin1(c.unit), standingAt(c.now)), c.rolled) << c.why;
    // No unit cannot advance a past date: the calendar refuses it.
    EXPECT_THROW(RollForward(Date::fromParts(2020, 1, 1), QString(), standingAt(kNow)), Failure);
}
