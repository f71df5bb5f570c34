// Saving a template: a real task in a vdir becomes a row of a real SQLCipher tblSteplets. Every
// column under its write condition, the pattern or zeros, the distances with the today rule and
// the 31 Dec 2029 guards where they stand, "[Empty]" fill-ins, the temporary task deleted, and
// the unfinished edit after a failure.
#include "TemplateFixture.h"
#include "platform/SafeTaskItem.h"
#include "templates/TemplateRow.h"

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {

class SaveTemplate : public TemplateFixture {
protected:
    // The task the user filled in on the form, saved once as the form does.
    std::shared_ptr<ol::TaskItem> task(const std::map<QString, Value>& props, const QString& body = {})
    {
        auto item = taskFolder()->Items().Add();
        for (const auto& [name, v] : props) item->set(name, v);
        if (!body.isEmpty()) {
            SafeTaskItem safe;
            safe.setItem(item);
            safe.setBody(body);
        }
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
    static qint64 minutesFromMoment(const Date& d)
    {
        const QDateTime from(QDate(2024, 3, 14), QTime(15, 30));
        return from.secsTo(d.toQDateTime()) / 60;
    }
};

} // namespace

TEST_F(SaveTemplate, ANewRowHoldsTheTaskAndTheOptionsAndTheTaskIsDeleted)
{
    auto item = task({{"Subject", "Annual review"}, {"ActualWork", 30}, {"TotalWork", 90},
                      {"BillingInformation", "Fixed fee"}, {"Categories", "Tax, Clients"}, {"Companies", "Byrne & Lowell"},
                      {"Mileage", "12 km"}, {"Role", "Reviewer"}, {"ReminderSoundFile", "/sounds/chime.wav"},
                      {"Importance", 2}, {"Sensitivity", 2}, {"Status", 1}, {"PercentComplete", 40},
                      {"NoAging", true}, {"ReminderSet", true}, {"ReminderPlaySound", true}, {"TeamTask", true},
                      {"DueDate", Date::fromParts(2024, 3, 20)}, {"StartDate", Date::fromParts(2024, 3, 18)},
                      {"ReminderTime", Date::fromParts(2024, 3, 19, 9, 0)}},
                     QStringLiteral("Bring last year's file."));
    auto& t = EditedTemplate();
    t.DateType = Int16(1);
    t.FillIn1 = "Full Name (Outlook Contact Property)";
    t.FillIn3 = "Subject field from template";
    t.UserPrompt2 = "Which quarter?";
    t.PromptForAssignee = "True";
    t.AnchorDescription = "Year end";
    save(item);

    EXPECT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    EXPECT_TRUE(session().ErrorTrail.endsWith("\r\nX:modTasks: SaveTemplateToDB"));
    EXPECT_EQ(stored(col::Subject), Value("Annual review"));
    EXPECT_EQ(stored(col::Body), Value("Bring last year's file."));
    EXPECT_EQ(stored(col::BillingInformation), Value("Fixed fee"));
    EXPECT_EQ(stored(col::Categories), Value("Tax, Clients"));
    EXPECT_EQ(stored(col::Companies), Value("Byrne & Lowell"));
    EXPECT_EQ(stored(col::Mileage), Value("12 km"));
    EXPECT_EQ(stored(col::Role), Value("Reviewer"));
    EXPECT_EQ(stored(col::ReminderSoundFile), Value("/sounds/chime.wav"));
    EXPECT_EQ(stored(col::ActualWork), Value(30));
    EXPECT_EQ(stored(col::TotalWork), Value(90));
    EXPECT_EQ(stored(col::Importance), Value(2));
    EXPECT_EQ(stored(col::Sensitivity), Value(2));
    EXPECT_EQ(stored(col::Status), Value(1));
    EXPECT_EQ(stored(col::PercentComplete), Value(40));
    EXPECT_EQ(stored(col::NoAging), Value(true));
    EXPECT_EQ(stored(col::ReminderSet), Value(true));
    EXPECT_EQ(stored(col::TeamTask), Value(true));
    EXPECT_EQ(stored(col::Complete), Value(false));
    EXPECT_EQ(stored(col::DueDate), Value(Date::fromParts(2024, 3, 20)));
    EXPECT_EQ(stored(col::StartDate), Value(Date::fromParts(2024, 3, 18)));
    EXPECT_EQ(stored(col::ReminderTime), Value(Date::fromParts(2024, 3, 19, 9, 0)));
    EXPECT_EQ(stored(col::DueDateOffset), Value(5 * 1440 + 510));
    EXPECT_EQ(stored(col::StartDateOffset), Value(3 * 1440 + 510));
    EXPECT_EQ(stored(col::ReminderOffset), Value(4 * 1440 + 1050));
    EXPECT_EQ(stored(col::DateType), Value(Int16(1)));
    EXPECT_EQ(stored(col::FillIn1), Value("Full Name (Outlook Contact Property)"));
    EXPECT_EQ(stored(col::FillIn2), Value("[Empty]"));
    EXPECT_EQ(stored(col::FillIn3), Value("Subject field from template"));
    EXPECT_EQ(stored(col::FillIn4), Value("[Empty]"));
    EXPECT_TRUE(stored(col::UserPrompt1).isNull()) << "empty prompts are not written";
    EXPECT_EQ(stored(col::UserPrompt2), Value("Which quarter?"));
    EXPECT_EQ(stored(col::PromptForAssignee), Value(true));
    EXPECT_EQ(stored(col::AnchorDescription), Value("Year end"));
    EXPECT_EQ(taskFiles(), 0) << "the temporary task is deleted";
    EXPECT_TRUE(EditedTemplate().TemplateItem) << "the reference stays until the module state is reset";
}

TEST_F(SaveTemplate, ATaskDueTodayIsZeroMinutesAwayAndTomorrowMidnightIs510)
{
    save(task({{"Subject", "Today"}, {"DueDate", Date::fromParts(2024, 3, 14)}}));
    EXPECT_EQ(stored(col::DueDateOffset), Value(0)) << "not the negative distance to midnight";

    auto rs = openTemplates();
    rs->MoveFirst();
    rs->Delete();
    save(task({{"Subject", "Tomorrow"}, {"DueDate", Date::fromParts(2024, 3, 15)}}));
    EXPECT_EQ(stored(col::DueDateOffset), Value(510));
}

TEST_F(SaveTemplate, YesterdayIsANegativeDistanceAndTheStartDateHasTheTodayRuleToo)
{
    save(task({{"Subject", "Late"}, {"DueDate", Date::fromParts(2024, 3, 13)},
               {"StartDate", Date::fromParts(2024, 3, 14)}, {"ReminderTime", Date::fromParts(2024, 3, 14, 8, 0)}}));
    EXPECT_EQ(stored(col::DueDateOffset), Value(-(1440 + 930)));
    EXPECT_EQ(stored(col::StartDateOffset), Value(0));
    EXPECT_EQ(stored(col::ReminderOffset), Value(-450)) << "the reminder has no today rule";
}

TEST_F(SaveTemplate, DatesWithoutValueAreGuardedOnlyWhereTheRuleSays)
{
    // No due, start or reminder date: the store's no-date value.
    save(task({{"Subject", "Undated"}}));
    const qint64 toNoDate = minutesFromMoment(Date::noDate());
    EXPECT_EQ(stored(col::DueDateOffset), Value(toNoDate)) << "the due date is not guarded";
    EXPECT_EQ(stored(col::ReminderOffset), Value(toNoDate)) << "nor is the reminder";
    EXPECT_EQ(stored(col::StartDateOffset), Value(0)) << "the start date is";
}

TEST_F(SaveTemplate, TheStartGuardBeginsOn31December2029)
{
    save(task({{"Subject", "Far"}, {"StartDate", Date::fromParts(2029, 12, 31)}, {"DueDate", Date::fromParts(2029, 12, 31)}}));
    EXPECT_EQ(stored(col::StartDateOffset), Value(0));
    EXPECT_EQ(stored(col::DueDateOffset), Value(minutesFromMoment(Date::fromParts(2029, 12, 31))));

    auto rs = openTemplates();
    rs->MoveFirst();
    rs->Delete();
    save(task({{"Subject", "Near"}, {"StartDate", Date::fromParts(2029, 12, 30)}}));
    EXPECT_EQ(stored(col::StartDateOffset), Value(minutesFromMoment(Date::fromParts(2029, 12, 30))));
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
    EXPECT_EQ(stored(col::IsRecurring), Value(true));
    EXPECT_EQ(stored(col::RecurrenceType), Value(1));
    EXPECT_EQ(stored(col::Interval), Value(2));
    EXPECT_EQ(stored(col::DayOfWeekMask), Value(ol::olMonday | ol::olThursday));
    EXPECT_EQ(stored(col::NoEndDate), Value(false));
    EXPECT_EQ(stored(col::PatternStartDate), Value(Date::fromParts(2024, 3, 18)));
    EXPECT_EQ(stored(col::PatternEndDate), Value(Date::fromParts(2024, 4, 1)));
    // Day numbers minus a reference of 15:30: 3.35 and 17.35 days, made whole by the column.
    EXPECT_EQ(stored(col::PatternStartOffset), Value(3));
    EXPECT_EQ(stored(col::PatternEndOffset), Value(17));

    // An end on 31 Dec 2029 or later is kept as no end; a start that late is not guarded.
    auto rs = openTemplates();
    rs->MoveFirst();
    rs->Delete();
    auto late = task({{"Subject", "Late pattern"}, {"DueDate", Date::fromParts(2030, 1, 7)}});
    late->GetRecurrencePattern()->set("PatternStartDate", Date::fromParts(2030, 1, 7));
    late->GetRecurrencePattern()->set("PatternEndDate", Date::fromParts(2030, 6, 3));
    late->Save();
    save(late);
    EXPECT_EQ(stored(col::PatternEndOffset), Value(0));
    EXPECT_EQ(stored(col::PatternStartOffset), Value(static_cast<qint32>(roundHalfEven(
                                                   Date::fromParts(2030, 1, 7).serial() - moment.serial()))));
}

TEST_F(SaveTemplate, ANonRecurringTaskWritesZerosOverAnEarlierPattern)
{
    addRow({{col::Subject, "Old"}, {col::IsRecurring, true}, {col::RecurrenceType, 5}, {col::Interval, 1},
            {col::MonthOfYear, 4}, {col::DayOfMonth, 15}, {col::NoEndDate, true}, {col::Regenerate, true},
            {col::PatternStartDate, Date::fromParts(2020, 4, 15)}, {col::PatternEndDate, Date::fromParts(2030, 4, 15)},
            {col::PatternStartOffset, 12}, {col::PatternEndOffset, 30}});
    save(task({{"Subject", "Once"}}), true);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    for (int pos = col::DayOfMonth; pos <= col::Regenerate; ++pos) {
        const Value v = stored(pos);
        EXPECT_FALSE(v.isNull()) << pos;
        EXPECT_EQ(v.doubleOrZero(), 0.0) << pos;
    }
    EXPECT_TRUE(stored(col::PatternEndDate).dateOrZero().isZero());
    EXPECT_TRUE(stored(col::PatternStartDate).dateOrZero().isZero());
    EXPECT_EQ(stored(col::PatternStartOffset), Value(0));
    EXPECT_EQ(stored(col::PatternEndOffset), Value(0));
    EXPECT_EQ(stored(col::IsRecurring), Value(false));
}

TEST_F(SaveTemplate, AnEditKeepsTheOldTextWhereTheNewOneIsEmpty)
{
    const QStringList oneWay = {"BillingInformation", "Categories", "Companies", "Mileage", "ReminderSoundFile", "Role"};
    RowValues old{{col::Subject, "Kept subject"}, {col::Body, "Kept body"}, {col::ActualWork, 45},
                  {col::UserPrompt1, "Kept prompt"}, {col::AnchorDescription, "Kept anchor"},
                  {col::PromptForAssignee, true}, {col::FillIn1, "Current Date"}};
    for (const QString& name : oneWay) {
        for (int pos = 1; pos <= col::Last; ++pos)
            if (TemplateColumnName(pos) == name) old[pos] = Value(QStringLiteral("Kept ") + name);
    }
    addRow(old);
    save(task({}), true);

    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    EXPECT_EQ(stored(col::Subject), Value("Kept subject"));
    EXPECT_EQ(stored(col::Body), Value("Kept body"));
    for (int pos = 1; pos <= col::Last; ++pos) {
        if (oneWay.contains(TemplateColumnName(pos))) {
            EXPECT_EQ(stored(pos), Value(QStringLiteral("Kept ") + TemplateColumnName(pos)));
        }
    }
    EXPECT_EQ(stored(col::UserPrompt1), Value("Kept prompt"));
    EXPECT_EQ(stored(col::AnchorDescription), Value("Kept anchor"));
    EXPECT_EQ(stored(col::PromptForAssignee), Value(true));
    // The other columns follow the task and the options.
    EXPECT_EQ(stored(col::ActualWork), Value(0));
    EXPECT_EQ(stored(col::FillIn1), Value("[Empty]"));
    EXPECT_EQ(openTemplates()->RecordCount(), 1) << "an edit adds no row";
}

TEST_F(SaveTemplate, AFailureLeavesNoRowAndTheTemporaryTaskInItsFolder)
{
    auto item = task({{"Subject", "Overflowing"}});
    EditedTemplate().TemplateItem = item;
    // Minutes from the year 100 to the no-date value do not fit 32 bits.
    EditedTemplate().ReferenceDate = Date::fromParts(100, 1, 1);
    Bool16 bEdit(false);
    SaveTemplateToDB(bEdit, clock());

    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_EQ(sink.failures[0].number, 6);
    EXPECT_TRUE(sink.failures[0].location.endsWith("X:modTasks: SaveTemplateToDB:Line 510"));
    EXPECT_EQ(openTemplates()->RecordCount(), 0);
    EXPECT_EQ(taskFiles(), 1);
}

TEST_F(SaveTemplate, WithoutATemporaryTaskNothingIsWritten)
{
    Bool16 bEdit(false);
    SaveTemplateToDB(bEdit, clock());
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_EQ(sink.failures[0].number, 91);
    EXPECT_EQ(openTemplates()->RecordCount(), 0);
}
