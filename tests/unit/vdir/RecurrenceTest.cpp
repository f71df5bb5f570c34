// The live recurrence pattern of a task: made on first ask, its endings coupled, its refusals.
// Each type through the file, and the RRULE it is written as, is pinned by golden/.
#include "VdirFixture.h"
#include "backends/vdir/Recurrence.h"

using namespace steplets;
using namespace steplets::test;

namespace {
using Recurrence = VdirFixture;
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

    pattern->set(QStringLiteral("PatternEndDate"), Value(Date::fromParts(2025, 1, 1)));
    EXPECT_EQ(pattern->get(QStringLiteral("NoEndDate")), Value(false));
    pattern->set(QStringLiteral("NoEndDate"), Value(true));
    EXPECT_EQ(pattern->get(QStringLiteral("PatternEndDate")), Value(Date::noDate()));
    EXPECT_EQ(pattern->get(QStringLiteral("Occurrences")), Value(0));

    const std::pair<const char*, Value> refused[] = {{"RecurrenceType", Value(4)}, {"DayOfWeekMask", Value(128)}, {"Interval", Value(0)}};
    for (const auto& [name, v] : refused)
        EXPECT_EQ(failure([&] { pattern->set(QString::fromLatin1(name), v); }).number(), vdir::fail::InvalidArgument) << name;
    EXPECT_EQ(failure([&] { pattern->get(QStringLiteral("Frequency")); }).number(), vdir::fail::NoSuchProperty);
}
