#include "DateRules.h"
#include "platform/UiHost.h"
#include "session/SessionContext.h"
#include <utility>

namespace steplets::modTasks {

Clock uiClock()
{
    return [] { return session().ui().Now(); };
}

Date BaseDate(int iDateType, const Date& previous, const Date& anchor, const Clock& now)
{
    switch (iDateType) {
    case dateType::Relative: return now();
    case dateType::Anchor: return anchor;
    default: return previous;
    }
}

QString RollUnit(bool bIsRecurring, long lRecurrenceType, const QString& lastUnit)
{
    if (!bIsRecurring) return QStringLiteral("yyyy");
    switch (lRecurrenceType) {
    case 0: return QStringLiteral("d");
    case 1: return QStringLiteral("ww");
    case 2:
    case 3: return QStringLiteral("m");
    case 5:
    case 6: return QStringLiteral("yyyy");
    default: return lastUnit;
    }
}

Date RollForward(Date d, const QString& sUnit, const Clock& now)
{
    // One unit per pass whatever the pattern's interval: the first date of the rhythm that is
    // not in the past, with its time of day.
    while (d < now()) d = d.add(sUnit, 1);
    return d;
}

DateRule::DateRule(int iDateType, const Date& base, QString sUnit, Clock now)
    : m_dateType(iDateType), m_base(base), m_unit(std::move(sUnit)), m_now(std::move(now))
{
}

Date DateRule::afterMinutes(qint32 minutes) const { return m_base.add(QStringLiteral("n"), minutes); }

// Pattern distances were stored as plain day differences, so they come back the same way,
// keeping the base's time of day.
Date DateRule::afterDays(qint32 days) const { return m_base.plusDays(days); }

std::optional<Date> DateRule::StartDate(const Date& stored, qint32 lStartDateOffset) const
{
    if (fixed()) return RollForward(stored, m_unit, m_now);
    if (lStartDateOffset == 0) return std::nullopt;
    return afterMinutes(lStartDateOffset);
}

Date DateRule::DueDate(const Date& stored, qint32 lDueDateOffset) const
{
    if (fixed()) return RollForward(stored, m_unit, m_now);
    return afterMinutes(lDueDateOffset);
}

Date DateRule::ReminderTime(const Date& stored, qint32 lReminderOffset) const
{
    if (fixed()) return RollForward(stored, m_unit, m_now);
    return afterMinutes(lReminderOffset);
}

std::optional<Date> DateRule::PatternEndDate(qint32 lPatternEndOffset) const
{
    if (fixed() || lPatternEndOffset == 0) return std::nullopt;
    return afterDays(lPatternEndOffset);
}

std::optional<Date> DateRule::PatternStartDate(const Date& stored, qint32 lPatternStartOffset) const
{
    if (fixed()) return RollForward(stored, m_unit, m_now);
    if (lPatternStartOffset == 0) return std::nullopt;
    return afterDays(lPatternStartOffset);
}

} // namespace steplets::modTasks
