#pragma once
// A task's and a recurrence pattern's properties by name: reading, checked writing, and the
// couplings the object model keeps (Complete, Status, PercentComplete and DateCompleted move
// together; an end date or a count ends a pattern).
#include "TaskData.h"
#include <QString>
#include <QStringList>

namespace steplets::vdir {

// Names a task answers to through get and set ("Body" is not among them).
const QStringList& taskPropertyNames();
Value taskGet(const TaskData& task, const QString& name);
// Converts, checks and stores; a refused value or a read-only or unknown name is a failure.
void taskSet(TaskData& task, const QString& name, const Value& value, const Date& today);

const QStringList& patternPropertyNames();
Value patternGet(const PatternData& pattern, const QString& name);
void patternSet(PatternData& pattern, const QString& name, const Value& value);

// A new pattern as the object model starts one: weekly on the weekday of its start.
PatternData freshPattern(const TaskData& task, const Date& today);

// Checks a date that an item is to take: before 1 Jan 1601 is refused.
Date checkedDate(const Value& value, const QString& property);
// Checks a whole number against its range.
qint32 checkedNumber(const Value& value, const QString& property, qint32 low, qint32 high);

} // namespace steplets::vdir
