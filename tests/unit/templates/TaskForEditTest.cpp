// A template row back on a real task for editing: the first row of the filter, fixed dates
// rolled one unit at a time, distances from the present moment or the anchor just chosen, the
// recurrence written under its conditions, "Source", Save, and the total work after the save.
#include "TemplateFixture.h"
#include "platform/SafeTaskItem.h"
#include "templates/FormatField.h"
#include "templates/TaskForEdit.h"
#include "templates/TemplateRow.h"

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {

class TaskForEdit : public TemplateFixture {
protected:
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
    static RowValues fixedRow(RowValues extra)
    {
        RowValues row{{col::Subject, "Annual review"}, {col::DateType, Int16(0)}, {col::IsRecurring, false}};
        for (const auto& [pos, v] : extra) row[pos] = v;
        return row;
    }
};

} // namespace

// The roll itself is pinned in DateRulesTest; here a fixed template's dates and pattern start
// go through it, weekly by whole weeks whatever the interval.
TEST_F(TaskForEdit, AFixedTemplatesDatesAndPatternStartAreRolledForward)
{
    addRow(fixedRow({{col::IsRecurring, true}, {col::RecurrenceType, 1}, {col::Interval, 2},
                     {col::DayOfWeekMask, ol::olMonday}, {col::NoEndDate, true},
                     {col::DueDate, Date::fromParts(2024, 2, 26, 9, 0)}, {col::StartDate, Date::fromParts(2024, 3, 11, 8, 0)},
                     {col::PatternStartDate, Date::fromParts(2024, 2, 26)}}));
    auto item = edit();
    ASSERT_TRUE(item);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    EXPECT_EQ(date(item, "DueDate"), Date::fromParts(2024, 3, 18, 9, 0));
    EXPECT_EQ(date(item, "StartDate"), Date::fromParts(2024, 3, 18, 8, 0));
    auto p = item->GetRecurrencePattern();
    EXPECT_EQ(p->get("Interval"), Value(2));
    EXPECT_EQ(p->get("DayOfWeekMask"), Value(ol::olMonday));
    EXPECT_EQ(p->get("NoEndDate"), Value(true));
    EXPECT_EQ(p->get("PatternStartDate").toDate(), Date::fromParts(2024, 3, 18));
    EXPECT_EQ(item->Subject(), "Annual review");
    EXPECT_TRUE(session().ErrorTrail.endsWith("\r\nX:modTasks: CreateTaskFromTemplateForEdit"));
}

TEST_F(TaskForEdit, TheNoDateValueIsKeptAndNullDatesGiveTheZeroDate)
{
    addRow(fixedRow({{col::DueDate, Date::noDate()}, {col::ReminderTime, Date::noDate()}}));
    auto item = edit();
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    EXPECT_TRUE(date(item, "DueDate").isNoDate());
    EXPECT_TRUE(date(item, "ReminderTime").isNoDate());
    // Column 32 is Null: the zero date, rolled by years up to the present.
    EXPECT_EQ(date(item, "StartDate"), Date::fromParts(2024, 12, 30));
    EXPECT_TRUE(date(item, "DateCompleted").isZero()) << "a Null column 7 writes the zero date";
}

TEST_F(TaskForEdit, AnAnchorTemplateIsRebuiltAroundTheAnchorJustChosen)
{
    addRow({{col::Subject, "Close books"}, {col::DateType, Int16(2)}, {col::DueDateOffset, 1440},
            {col::StartDateOffset, -1440}, {col::ReminderOffset, -60}, {col::IsRecurring, true},
            {col::RecurrenceType, 2}, {col::Interval, 1}, {col::DayOfMonth, 1},
            {col::PatternStartOffset, 1}, {col::PatternEndOffset, 92},
            {col::NoEndDate, false}, {col::Occurrences, 3}});
    EditedTemplate().ReferenceDate = Date::fromParts(2024, 6, 30, 12, 0);
    auto item = edit();
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    EXPECT_EQ(date(item, "DueDate"), Date::fromParts(2024, 7, 1, 12, 0));
    EXPECT_EQ(date(item, "StartDate"), Date::fromParts(2024, 6, 29, 12, 0));
    EXPECT_EQ(date(item, "ReminderTime"), Date::fromParts(2024, 6, 30, 11, 0));
    auto p = item->GetRecurrencePattern();
    EXPECT_EQ(p->get("RecurrenceType"), Value(2));
    EXPECT_EQ(p->get("DayOfMonth"), Value(1));
    EXPECT_EQ(p->get("PatternStartDate").toDate().datePart(), Date::fromParts(2024, 7, 1));
    EXPECT_EQ(p->get("PatternEndDate").toDate().datePart(), Date::fromParts(2024, 9, 30));
    EXPECT_NE(p->get("Occurrences"), Value(3)) << "the count is not restored for a relative or anchor template";
}

TEST_F(TaskForEdit, OptionsComeFromTheRowExceptTheAnchorDescriptionAndNullsKeepWhatWasThere)
{
    auto& t = EditedTemplate();
    t.FillIn2 = "from the dialog";
    t.UserPrompt3 = "from the dialog";
    t.AnchorDescription = "from the dialog";
    addRow(fixedRow({{col::FillIn1, "Current Date"}, {col::UserPrompt1, "Which quarter?"},
                     {col::PromptForAssignee, true}, {col::AnchorDescription, "from the row"},
                     {col::DueDate, Date::fromParts(2025, 1, 1)}}));
    edit();
    EXPECT_EQ(t.DateType.value(), 0);
    EXPECT_EQ(t.FillIn1, "Current Date");
    EXPECT_EQ(t.FillIn2, "from the dialog");
    EXPECT_EQ(t.UserPrompt1, "Which quarter?");
    EXPECT_EQ(t.UserPrompt3, "from the dialog");
    EXPECT_EQ(t.PromptForAssignee, "True");
    EXPECT_EQ(t.AnchorDescription, "from the dialog");
}

// Its "Source" property is played by authoring-edit-form-closed-unsaved.
TEST_F(TaskForEdit, TheTaskIsSavedAndTheTotalWorkComesAfterTheSave)
{
    addRow(fixedRow({{col::DueDate, Date::fromParts(2025, 1, 1)}, {col::TotalWork, 120}, {col::ActualWork, 30},
                     {col::Body, "Bring the file."}, {col::Categories, "Tax"}, {col::Importance, 2},
                     {col::Status, 1}, {col::TeamTask, true}}));
    auto item = edit();
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    EXPECT_EQ(taskFiles(), 1);
    EXPECT_EQ(item->get("TotalWork"), Value(120));
    EXPECT_FALSE(item->Saved()) << "the total work is a change the form opens with";
    auto onDisk = fromFile(item->EntryID());
    EXPECT_EQ(onDisk->get("TotalWork"), Value(0));
    EXPECT_EQ(onDisk->get("ActualWork"), Value(30));
    EXPECT_EQ(onDisk->get("Categories"), Value("Tax"));
    EXPECT_EQ(onDisk->get("Importance"), Value(2));
    EXPECT_EQ(onDisk->get("TeamTask"), Value(true));
    SafeTaskItem safe;
    safe.setItem(onDisk);
    EXPECT_EQ(safe.Body(), "Bring the file.");
}

TEST_F(TaskForEdit, OnlyTheFirstRowOfTheFilterIsUsedAndAnEmptyFilterMakesNothingButAReport)
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
    session().rsTemplates->Filter(QStringLiteral("Tag = 5"));
    EXPECT_FALSE(edit());
    EXPECT_EQ(taskFiles(), 1);
    // The empty set has no first row: the move fails before the count is looked at.
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_EQ(sink.failures[0].number, 3021);
}

TEST_F(TaskForEdit, AFailureIsReportedAndTheItemNeverMade)
{
    addRow(fixedRow({{col::DueDate, Date::fromParts(2025, 1, 1)}}));
    session().sTaskFolderEID = QStringLiteral("no-such-folder");
    EXPECT_FALSE(edit());
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_TRUE(sink.failures[0].location.contains("X:modTasks: CreateTaskFromTemplateForEdit:Line "));
    EXPECT_EQ(taskFiles(), 0);
}

TEST_F(TaskForEdit, ASavedFixedTemplateComesBackAsTheTaskItWasMadeFrom)
{
    auto original = taskFolder()->Items().Add();
    original->set("Subject", "Quarterly filing");
    original->set("DueDate", Date::fromParts(2024, 4, 15, 17, 0));
    original->set("StartDate", Date::fromParts(2024, 4, 1, 9, 0));
    original->set("ReminderSet", true);
    original->set("ReminderTime", Date::fromParts(2024, 4, 15, 9, 0));
    original->set("PercentComplete", 25);
    original->set("Mileage", "40 km");
    original->Save();
    EditedTemplate().TemplateItem = original;
    EditedTemplate().ReferenceDate = moment;
    Bool16 bEdit(false);
    SaveTemplateToDB(bEdit, clock());
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();

    modTasks::ReSetModuleVariables();
    auto item = edit();
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].description.toStdString();
    for (const char* name : {"Subject", "DueDate", "StartDate", "ReminderSet", "ReminderTime", "PercentComplete", "Mileage"})
        EXPECT_EQ(item->get(name), original->get(name)) << name;
}
