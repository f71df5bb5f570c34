#pragma once
// What a template row hands to a new task: the working values of a pass, which a Null column
// leaves as the last row had them, and the table of the writes to the task in their binding order (a later
// write may undo what the store did for an earlier one).
#include "platform/runtime/Date.h"
#include "platform/runtime/Value.h"
#include "templates/TemplateRow.h"
#include <array>
#include <span>

namespace steplets {
class Recordset;
}

namespace steplets::processing {

class WorkingValues {
public:
    // Takes the column of the current row only when it holds a value.
    void take(Recordset& rs, int pos);
    bool has(int pos) const { return !at(pos).isNull(); }

    qint32 Long(int pos) const { return at(pos).longOrZero(); }
    Int16 Short(int pos) const { return at(pos).int16OrZero(); }
    bool Flag(int pos) const;
    QString Text(int pos) const { return at(pos).textOrEmpty(); }
    Date DateAt(int pos) const { return at(pos).dateOrZero(); }

private:
    const Value& at(int pos) const;
    std::array<Value, modTasks::col::Last + 1> m_values;
};

// The columns a pass reads after Subject, in the order of their positions.
bool isReadForTask(int pos);

struct TaskWrite {
    enum class Kind { Long, Flag, DateValue, Text, Body, StartDate, DueDate, ReminderTime, Links, Recurrence };
    int order;              // 1..25
    int line;               // its statement number in the routine
    const char* property;   // the task property, empty for the links and the recurrence
    int column;             // the template column, -1 where the value is computed
    Kind kind;              // Text and Body are written only when not empty
};

std::span<const TaskWrite> taskWrites();

} // namespace steplets::processing
