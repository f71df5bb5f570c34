#pragma once
// How the dates of a template become the dates of a task: a base date chosen by the date type,
// a roll unit chosen by the recurrence, fixed dates rolled forward one unit at a time until they
// are not in the past, and distances added to the base date (minutes by calendar arithmetic,
// pattern days by plain day numbers). Shared by the task-for-edit routine and task processing.
#include "platform/runtime/Constants.h"
#include "platform/runtime/Date.h"
#include "platform/runtime/Int16.h"
#include <QString>
#include <functional>
#include <optional>

namespace steplets::modTasks {

// The present moment, asked anew at each call.
using Clock = std::function<Date()>;

// The session's clock: the UI host's Now.
Clock uiClock();

namespace dateType = steplets::dateType;

// The base date of a row: the present moment for a relative template, the anchor for an anchor
// template; a fixed template sets none, and an unknown type keeps the base of the last row that
// had one, so both give `previous` back.
Date BaseDate(int iDateType, const Date& previous, const Date& anchor, const Clock& now);

// The unit in which fixed dates advance: "yyyy" when not recurring, else by the recurrence
// type; an unknown type keeps `lastUnit`.
QString RollUnit(bool bIsRecurring, long lRecurrenceType, const QString& lastUnit);

// While the date lies before the present moment (date and time compared, the clock read at
// each test), adds one unit. A date already in the future comes back unchanged.
Date RollForward(Date d, const QString& sUnit, const Clock& now);

// The dates of one task from one template row. Fixed templates roll their stored dates; the
// others add the stored distances to the base date.
class DateRule {
public:
    DateRule(int iDateType, const Date& base, QString sUnit, Clock now);

    bool fixed() const { return m_dateType == dateType::Fixed; }
    const Date& base() const { return m_base; }
    const QString& unit() const { return m_unit; }

    // Nothing when the start date is not to be written (a distance of 0).
    std::optional<Date> StartDate(const Date& stored, qint32 lStartDateOffset) const;
    Date DueDate(const Date& stored, qint32 lDueDateOffset) const;
    Date ReminderTime(const Date& stored, qint32 lReminderOffset) const;
    // Distance forms only (the fixed end date is written as it stands, under NoEndDate);
    // nothing for a distance of 0.
    std::optional<Date> PatternEndDate(qint32 lPatternEndOffset) const;
    // Fixed: the stored start rolled; otherwise the distance in days, nothing for 0.
    std::optional<Date> PatternStartDate(const Date& stored, qint32 lPatternStartOffset) const;

private:
    Date afterMinutes(qint32 minutes) const;
    Date afterDays(qint32 days) const;

    int m_dateType;
    Date m_base;
    QString m_unit;
    Clock m_now;
};

} // namespace steplets::modTasks
