#pragma once
// What a template row hands to a new task: the columns a pass reads, and the table of the writes
// to the task in their binding order (a later write may undo what the store did for an earlier
// one).
#include "platform/runtime/Date.h"
#include "platform/runtime/Value.h"
#include "templates/TemplateRow.h"
#include <array>
#include <span>

namespace steplets {
class Recordset;
}

namespace steplets::processing {

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
