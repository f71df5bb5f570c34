#include "Recurrence.h"
#include <QStringList>
#include <array>

namespace steplets::vdir {

namespace {

// RRULE day codes in the order of the object model's mask bits (Sunday = 1).
constexpr std::array<const char*, 7> kDays = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

QString daysOfMask(int mask)
{
    QStringList days;
    for (int i = 0; i < 7; ++i)
        if (mask & (1 << i))
            days << QString::fromLatin1(kDays[i]);
    return days.join(QLatin1Char(','));
}

// Reads BYDAY items such as "MO" or "-1FR"; a leading ordinal becomes the instance.
void readDays(const QString& value, int& mask, int& instance)
{
    for (const QString& item : value.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QString code = item.right(2).toUpper();
        for (int i = 0; i < 7; ++i)
            if (code == QLatin1String(kDays[i]))
                mask |= 1 << i;
        const QString ordinal = item.left(item.size() - 2);
        if (!ordinal.isEmpty()) {
            const int n = ordinal.toInt();
            instance = n < 0 ? 5 : n;
        }
    }
}

QString untilOf(const Date& end)
{
    return end.date().toString(QStringLiteral("yyyyMMdd")) + QStringLiteral("T235959");
}

// The fields of a pattern, for the extras; order is the order of the file.
struct Field {
    const char* name;
    QString (*get)(const PatternData&);
    void (*set)(PatternData&, const QString&);
};

QString boolText(bool b) { return b ? QStringLiteral("TRUE") : QStringLiteral("FALSE"); }
QString dateText(const Date& d) { return d.toIso(); }
Date dateOf(const QString& s) { return Date::fromIso(s).value_or(Date::noDate()); }

#define INT_FIELD(F) {#F, [](const PatternData& p) { return QString::number(p.F); }, \
                      [](PatternData& p, const QString& v) { p.F = v.toInt(); }}
#define BOOL_FIELD(F) {#F, [](const PatternData& p) { return boolText(p.F); }, \
                       [](PatternData& p, const QString& v) { p.F = v.compare(QLatin1String("TRUE"), Qt::CaseInsensitive) == 0; }}
#define DATE_FIELD(F) {#F, [](const PatternData& p) { return dateText(p.F); }, \
                       [](PatternData& p, const QString& v) { p.F = dateOf(v); }}

const std::array<Field, 11> kFields = {{
    INT_FIELD(RecurrenceType), INT_FIELD(Interval), INT_FIELD(DayOfWeekMask), INT_FIELD(DayOfMonth),
    INT_FIELD(Instance), INT_FIELD(MonthOfYear), DATE_FIELD(PatternStartDate), DATE_FIELD(PatternEndDate),
    INT_FIELD(Occurrences), BOOL_FIELD(NoEndDate), BOOL_FIELD(Regenerate),
}};

} // namespace

QString patternExtraPrefix() { return QStringLiteral("X-STEPLETS-PATTERN-"); }

QString rruleOf(const PatternData& p)
{
    QStringList parts;
    const bool yearly = p.RecurrenceType == 5 || p.RecurrenceType == 6;
    const bool nth = p.RecurrenceType == 3 || p.RecurrenceType == 6;
    switch (p.RecurrenceType) {
    case 0: parts << QStringLiteral("FREQ=DAILY"); break;
    case 1: parts << QStringLiteral("FREQ=WEEKLY"); break;
    case 2: case 3: parts << QStringLiteral("FREQ=MONTHLY"); break;
    default: parts << QStringLiteral("FREQ=YEARLY"); break;
    }
    // A yearly pattern's interval counts in the object model's own way; other clients would
    // read it as years, so it stays in the extras.
    if (!yearly && p.Interval > 1)
        parts << QStringLiteral("INTERVAL=%1").arg(p.Interval);
    if (p.DayOfWeekMask != 0 && p.RecurrenceType != 2 && p.RecurrenceType != 5)
        parts << QStringLiteral("BYDAY=") + daysOfMask(p.DayOfWeekMask);
    if (nth && p.Instance >= 1 && p.Instance <= 5)
        parts << QStringLiteral("BYSETPOS=%1").arg(p.Instance == 5 ? -1 : p.Instance);
    if ((p.RecurrenceType == 2 || p.RecurrenceType == 5) && p.DayOfMonth >= 1 && p.DayOfMonth <= 31)
        parts << QStringLiteral("BYMONTHDAY=%1").arg(p.DayOfMonth);
    if (yearly && p.MonthOfYear >= 1 && p.MonthOfYear <= 12)
        parts << QStringLiteral("BYMONTH=%1").arg(p.MonthOfYear);
    if (!p.NoEndDate) {
        if (p.Occurrences > 0)
            parts << QStringLiteral("COUNT=%1").arg(p.Occurrences);
        else if (!p.PatternEndDate.isNoDate())
            parts << QStringLiteral("UNTIL=") + untilOf(p.PatternEndDate);
    }
    return parts.join(QLatin1Char(';'));
}

PatternData patternOfRrule(const QString& rule)
{
    PatternData p;
    p.RecurrenceType = 0;
    QString freq;
    bool hasDays = false;
    for (const QString& part : rule.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const int eq = part.indexOf(QLatin1Char('='));
        if (eq < 0)
            continue;
        const QString key = part.left(eq).trimmed().toUpper();
        const QString value = part.mid(eq + 1).trimmed();
        if (key == QLatin1String("FREQ")) {
            freq = value.toUpper();
        } else if (key == QLatin1String("INTERVAL")) {
            p.Interval = qMax(1, value.toInt());
        } else if (key == QLatin1String("BYDAY")) {
            readDays(value, p.DayOfWeekMask, p.Instance);
            hasDays = true;
        } else if (key == QLatin1String("BYSETPOS")) {
            const int n = value.split(QLatin1Char(',')).first().toInt();
            p.Instance = n < 0 ? 5 : n;
        } else if (key == QLatin1String("BYMONTHDAY")) {
            p.DayOfMonth = value.split(QLatin1Char(',')).first().toInt();
        } else if (key == QLatin1String("BYMONTH")) {
            p.MonthOfYear = value.split(QLatin1Char(',')).first().toInt();
        } else if (key == QLatin1String("COUNT")) {
            p.Occurrences = value.toInt();
            p.NoEndDate = false;
        } else if (key == QLatin1String("UNTIL")) {
            // A date outside the years a task can hold is passed over, as one that does not read.
            const QDate d = QDate::fromString(value.left(8), QStringLiteral("yyyyMMdd"));
            if (d.isValid() && d.year() >= 100 && d.year() <= 9999) {
                p.PatternEndDate = Date::fromQDate(d);
                p.NoEndDate = false;
            }
        }
    }
    if (freq == QLatin1String("WEEKLY"))
        p.RecurrenceType = 1;
    else if (freq == QLatin1String("MONTHLY"))
        p.RecurrenceType = hasDays ? 3 : 2;
    else if (freq == QLatin1String("YEARLY"))
        p.RecurrenceType = hasDays ? 6 : 5;
    return p;
}

QList<QPair<QString, QString>> patternExtras(const PatternData& pattern)
{
    const PatternData fromRule = patternOfRrule(rruleOf(pattern));
    QList<QPair<QString, QString>> extras;
    for (const Field& f : kFields) {
        const QString mine = f.get(pattern);
        if (mine != f.get(fromRule))
            extras << qMakePair(patternExtraPrefix() + QString::fromLatin1(f.name).toUpper(), mine);
    }
    return extras;
}

bool applyPatternExtra(PatternData& pattern, const QString& name, const QString& value)
{
    if (!name.startsWith(patternExtraPrefix(), Qt::CaseInsensitive))
        return false;
    const QString field = name.mid(patternExtraPrefix().size());
    for (const Field& f : kFields) {
        if (field.compare(QLatin1String(f.name), Qt::CaseInsensitive) == 0) {
            f.set(pattern, value);
            return true;
        }
    }
    return false;
}

} // namespace steplets::vdir
