#pragma once
// A template is one row of tblSteplets, reached by column position: a frozen copy of a task's
// properties, its dates in two forms (absolute, and as distances from a reference date), and the
// options of the template. SaveTemplateToDB turns the temporary task and the edited template
// into such a row.
#include "DateRules.h"
#include "platform/runtime/Int16.h"
#include "platform/runtime/Value.h"
#include <QString>
#include <array>

namespace steplets {
class Guard;
class Recordset;
namespace ol { class RecurrencePattern; }
}

namespace steplets::modTasks {

// Column positions of tblSteplets. 34, 35 and 39 are reserved and never touched.
namespace col {
enum : int {
    ID = 0, ActualWork, BillingInformation, Body, Categories, Companies, Complete, DateCompleted,
    DueDate, Importance, IsRecurring, DayOfMonth, DayOfWeekMask, Instance, Interval, MonthOfYear,
    NoEndDate, Occurrences, PatternEndDate, PatternStartDate, RecurrenceType, Regenerate, Mileage,
    NoAging, PercentComplete, ReminderOverrideDefault, ReminderPlaySound, ReminderSet,
    ReminderSoundFile, ReminderTime, Role, Sensitivity, StartDate, Status,
    Subject = 36, TeamTask, TotalWork,
    DueDateOffset = 40, PatternEndOffset, PatternStartOffset, ReminderOffset, StartDateOffset,
    DateType, FillIn1, FillIn2, FillIn3, FillIn4, UserPrompt1, UserPrompt2, UserPrompt3,
    UserPrompt4, PromptForAssignee, AnchorDescription,
    Last = AnchorDescription
};
} // namespace col

// The column name, which is also the task or pattern property it is copied from.
QString TemplateColumnName(int pos);

// Start and pattern-end distances are kept only for dates before 31 Dec 2029 (day 47483):
// later ones, the task store's no-date among them, store 0.
inline constexpr double kLastDistanceDay = 47483.0;

// The values of template rows as the readers take them: a column not read, or read as Null,
// gives the zero value of its reader type (0, False, the empty text, the zero date). One row read
// for itself uses read(); the working values of a processing pass use take(), so a Null keeps
// what the row before held.
class TemplateRow {
public:
    // Reads the column of the current row; a Null leaves the zero value.
    void read(Recordset& rs, int pos);
    // Takes the column of the current row only when it holds a value.
    void take(Recordset& rs, int pos);
    bool isNull(int pos) const { return value(pos).isNull(); }

    qint32 Long(int pos) const { return value(pos).longOrZero(); }
    Int16 Short(int pos) const { return value(pos).int16OrZero(); }
    // A yes/no kept as text says nothing when the text is empty.
    bool Flag(int pos) const;
    QString Text(int pos) const { return value(pos).textOrEmpty(); }
    Date DateAt(int pos) const { return value(pos).dateOrZero(); }

private:
    const Value& value(int pos) const;
    std::array<Value, col::Last + 1> m_values;
};

// Writes TemplateItem and EditedTemplate into the shared template recordset: a new row when
// bEdit is False, the current row when True. Text columns are written only when not empty.
// Ends by deleting the temporary task. After a failure the row stays in its unfinished edit.
void SaveTemplateToDB(Bool16& bEdit, const Clock& now = uiClock());

// Writes a recurring row's pattern onto a task's pattern, as both the task for edit and a
// processed task make it: the members the row's type uses, with the dates of `rule`. Statement
// numbers run from `firstLine` in steps of 10.
void WriteRecurrence(Guard& g, int firstLine, ol::RecurrencePattern& pattern, const TemplateRow& row, const DateRule& rule);

} // namespace steplets::modTasks
