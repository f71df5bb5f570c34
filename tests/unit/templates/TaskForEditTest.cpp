// A template row back on a real task for editing: the first row of the filter, fixed dates
// rolled, the options, Save, and the total work after the save. The editing scenarios play the
// dates of a fixed and an anchor template; the recurrence written is the processing tests' own.
#include "TemplateFixture.h"
#include "platform/SafeTaskItem.h"
#include "templates/TaskForEdit.h"

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
    static RowValues fixedRow(RowValues row)
    {
        row.insert({{col::Subject, "Annual review"}, {col::DateType, Int16(0)}, {col::IsRecurring, false}});
        return row;
    }
};

} // namespace

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

// Only the first row of the filter is used; an empty filter or a missing task folder make
// nothing but a report.
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

    // The empty set has no first row: the move fails before the count is looked at.
    modTasks::ReSetModuleVariables();
    session().rsTemplates->Filter(QStringLiteral("Tag = 5"));
    EXPECT_FALSE(edit());
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_EQ(sink.failures[0].number, 3021);

    session().rsTemplates->Filter(0L);
    session().sTaskFolderEID = QStringLiteral("no-such-folder");
    EXPECT_FALSE(edit());
    ASSERT_EQ(sink.failures.size(), 2u);
    EXPECT_TRUE(sink.failures[1].location.contains("X:modTasks: CreateTaskFromTemplateForEdit:Line "));
    EXPECT_EQ(taskFiles(), 1);
}
