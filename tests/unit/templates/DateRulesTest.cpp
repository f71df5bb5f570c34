// The date rules' arithmetic: the roll unit per recurrence, rolling one unit at a time. How a template's dates and distances go through them is pinned by the
// processing tests.
#include "templates/DateRules.h"
#include <gtest/gtest.h>

using namespace steplets;
using namespace steplets::modTasks;

namespace {

modTasks::Clock standingAt(const Date& d)
{
    return [d] { return d; };
}

const Date kNow = Date::fromParts(2024, 3, 14, 15, 30);

} // namespace

TEST(RollUnit, FollowsTheRecurrenceTypeAndKeepsTheLastUnitForAnUnknownOne)
{
    EXPECT_EQ(RollUnit(false, 0, QStringLiteral("d")), "yyyy") << "not recurring rolls by years";
    const std::tuple<int, const char*, const char*> units[] = {
        {0, "", "d"}, {1, "", "ww"}, {2, "", "m"}, {3, "", "m"}, {5, "", "yyyy"}, {6, "", "yyyy"}, {4, "ww", "ww"}, {7, "", ""}};
    for (const auto& [type, last, unit] : units) EXPECT_EQ(RollUnit(true, type, QString::fromLatin1(last)), unit) << type;
}

// A past date advances to the first of its rhythm that is not past, time of day kept; each month
// is added to the date reached, so 31 Jan -> 29 Feb -> 29 Mar. The zero date of a Null column is
// rolled where the template's task is built.
TEST(RollForward, APastDateAdvancesToTheFirstOfItsRhythmThatIsNotPast)
{
    struct Case { const char* why; Date from; const char* unit; Date now; Date rolled; };
    const Case cases[] = {
        {"passed this year", Date::fromParts(2021, 3, 1), "yyyy", kNow, Date::fromParts(2025, 3, 1)},
        {"earlier today has passed", Date::fromParts(2024, 3, 14, 9, 0), "d", kNow, Date::fromParts(2024, 3, 15, 9, 0)},
        {"later today", Date::fromParts(2024, 3, 14, 18, 0), "d", kNow, Date::fromParts(2024, 3, 14, 18, 0)},
        {"the present moment", kNow, "yyyy", kNow, kNow},
        {"no date", Date::noDate(), "d", kNow, Date::noDate()},
        {"monthly from 31 Jan", Date::fromParts(2024, 1, 31), "m", Date::fromParts(2024, 3, 15), Date::fromParts(2024, 3, 29)},
    };
    for (const Case& c : cases) EXPECT_EQ(RollForward(c.from, QString::fromLatin1(c.unit), standingAt(c.now)), c.rolled) << c.why;
    // No unit cannot advance a past date: the calendar refuses it.
    EXPECT_THROW(RollForward(Date::fromParts(2020, 1, 1), QString(), standingAt(kNow)), Failure);
}
