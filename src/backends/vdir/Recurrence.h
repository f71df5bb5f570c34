#pragma once
// A recurrence pattern as an RRULE that other clients understand, plus the pattern's fields that
// the RRULE cannot say, kept as X- properties beside it.
#include "TaskData.h"
#include <QList>
#include <QPair>
#include <QString>

namespace steplets::vdir {

// "FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,WE" (without the "RRULE:" name).
QString rruleOf(const PatternData& pattern);
// Reads an RRULE value, ours or another client's; parts it does not know are passed over.
PatternData patternOfRrule(const QString& rule);

// The fields that rruleOf cannot carry, each as (X- property name, value text), so that
// patternOfRrule followed by applyPatternExtras gives the pattern back exactly.
QList<QPair<QString, QString>> patternExtras(const PatternData& pattern);
// Applies one X- property; returns false if the name is no pattern field.
bool applyPatternExtra(PatternData& pattern, const QString& name, const QString& value);
QString patternExtraPrefix();

} // namespace steplets::vdir
