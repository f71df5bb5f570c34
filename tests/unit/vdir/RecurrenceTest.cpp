// Recurrence patterns: the live pattern, each type through the file, the RRULE other clients read.
#include "VdirFixture.h"
#include "backends/vdir/Recurrence.h"

using namespace steplets;
using namespace steplets::test;

namespace {

using Recurrence = VdirFixture;

struct PatternCase {
    const char* label;
    QList<QPair<QString, Value>> writes;
    const char* rrule;                        // what other clients are to read
};

QList<PatternCase> cases()
{
    const Value start(Date::fromParts(2024, 1, 8));
    const Value end(Date::fromParts(2024, 12, 30));
    return {
        {"daily", {{"RecurrenceType", Value(0)}, {"Interval", Value(3)}, {"PatternStartDate", start}, {"NoEndDate", Value(true)}},
         "FREQ=DAILY;INTERVAL=3"},
        {"weekly", {{"RecurrenceType", Value(1)}, {"Interval", Value(2)}, {"DayOfWeekMask", Value(2 | 8)},
                    {"PatternStartDate", start}, {"PatternEndDate", end}},
         "FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,WE;UNTIL=20241230T235959"},
        {"monthly", {{"RecurrenceType", Value(2)}, {"DayOfMonth", Value(15)}, {"PatternStartDate", start},
                     {"Occurrences", Value(6)}},
         "FREQ=MONTHLY;BYMONTHDAY=15;COUNT=6"},
        {"month-nth", {{"RecurrenceType", Value(3)}, {"Instance", Value(5)}, {"DayOfWeekMask", Value(32)},
                       {"PatternStartDate", start}},
         "FREQ=MONTHLY;BYDAY=FR;BYSETPOS=-1"},
        {"yearly", {{"RecurrenceType", Value(5)}, {"Interval", Value(12)}, {"DayOfMonth", Value(15)},
                    {"MonthOfYear", Value(4)}, {"PatternStartDate", start}, {"Regenerate", Value(true)}},
         "FREQ=YEARLY;BYMONTHDAY=15;BYMONTH=4"},
        {"year-nth", {{"RecurrenceType", Value(6)}, {"Instance", Value(2)}, {"DayOfWeekMask", Value(4)},
                      {"MonthOfYear", Value(11)}, {"PatternStartDate", start}, {"PatternEndDate", end}, {"Occurrences", Value(3)}},
         "FREQ=YEARLY;BYDAY=TU;BYSETPOS=2;BYMONTH=11;COUNT=3"},
    };
}

// The parts of the file's RRULE, in a stable order (writers may order them as they like).
QStringList rruleParts(const QByteArray& ics)
{
    for (const QByteArray& line : ics.split('\n'))
        if (line.startsWith("RRULE:")) {
            QStringList parts = QString::fromUtf8(line.mid(6).trimmed()).split(QLatin1Char(';'));
            parts.sort();
            return parts;
        }
    return {};
}

QStringList sortedParts(const char* rule)
{
    QStringList parts = QString::fromLatin1(rule).split(QLatin1Char(';'));
    parts.sort();
    return parts;
}

} // namespace

TEST_F(Recurrence, GetRecurrencePatternMakesTheTaskRecurringAndIsLive)
{
    auto task = newTask();
    task->set(QStringLiteral("DueDate"), Value(Date::fromParts(2024, 5, 17, 9, 0)));   // a Friday
    task->Save();
    auto pattern = task->GetRecurrencePattern();
    EXPECT_EQ(task->get(QStringLiteral("IsRecurring")), Value(true));
    EXPECT_FALSE(task->Saved());
    EXPECT_EQ(pattern, task->GetRecurrencePattern()) << "the same pattern on each call";
    EXPECT_EQ(pattern->get(QStringLiteral("RecurrenceType")), Value(1));
    EXPECT_EQ(pattern->get(QStringLiteral("DayOfWeekMask")), Value(ol::olFriday));
    EXPECT_EQ(pattern->get(QStringLiteral("PatternStartDate")), Value(Date::fromParts(2024, 5, 17)));
    EXPECT_EQ(pattern->get(QStringLiteral("NoEndDate")), Value(true));
    pattern->set(QStringLiteral("Interval"), Value(4));
    EXPECT_EQ(task->GetRecurrencePattern()->get(QStringLiteral("Interval")), Value(4));
}

TEST_F(Recurrence, EachTypeRoundTripsAndWritesAnRruleOthersUnderstand)
{
    const QStringList fields = {"RecurrenceType", "Interval", "DayOfWeekMask", "DayOfMonth", "Instance", "MonthOfYear",
                                "PatternStartDate", "PatternEndDate", "Occurrences", "NoEndDate", "Regenerate"};
    for (const PatternCase& c : cases()) {
        SCOPED_TRACE(c.label);
        auto task = newTask();
        auto pattern = task->GetRecurrencePattern();
        for (const auto& [name, value] : c.writes)
            pattern->set(name, value);
        QList<Value> expected;
        for (const QString& f : fields)
            expected << pattern->get(f);
        task->Save();

        EXPECT_EQ(rruleParts(fileText(taskFile(task->EntryID()))), sortedParts(c.rrule));
        auto back = reload(task->EntryID())->GetRecurrencePattern();
        for (int i = 0; i < fields.size(); ++i)
            EXPECT_EQ(back->get(fields[i]), expected[i]) << fields[i].toStdString();
    }
}

TEST_F(Recurrence, EndingsFollowEachOther)
{
    auto pattern = newTask()->GetRecurrencePattern();
    pattern->set(QStringLiteral("PatternEndDate"), Value(Date::fromParts(2025, 1, 1)));
    EXPECT_EQ(pattern->get(QStringLiteral("NoEndDate")), Value(false));
    pattern->set(QStringLiteral("NoEndDate"), Value(true));
    EXPECT_EQ(pattern->get(QStringLiteral("PatternEndDate")), Value(Date::noDate()));
    EXPECT_EQ(pattern->get(QStringLiteral("Occurrences")), Value(0));
}

TEST_F(Recurrence, RefusedPatternValues)
{
    auto pattern = newTask()->GetRecurrencePattern();
    EXPECT_EQ(failure([&] { pattern->set(QStringLiteral("RecurrenceType"), Value(4)); }).number(), vdir::fail::InvalidArgument);
    EXPECT_EQ(failure([&] { pattern->set(QStringLiteral("DayOfWeekMask"), Value(128)); }).number(), vdir::fail::InvalidArgument);
    EXPECT_EQ(failure([&] { pattern->set(QStringLiteral("Interval"), Value(0)); }).number(), vdir::fail::InvalidArgument);
    EXPECT_EQ(failure([&] { pattern->get(QStringLiteral("Frequency")); }).number(), vdir::fail::NoSuchProperty);
}
