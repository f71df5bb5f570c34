// The date rules: base date per date type, roll unit per recurrence, rolling one unit at a time
// against a clock read at every test, minutes by the calendar and pattern days by day numbers.
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

TEST(BaseDate, RelativeTakesTheClockAnchorTakesTheAnchorOthersKeepThePreviousBase)
{
    const Date previous = Date::fromParts(2024, 1, 2, 9, 0);
    const Date anchor = Date::fromParts(2024, 6, 30);
    EXPECT_EQ(BaseDate(1, previous, anchor, standingAt(kNow)), kNow);
    EXPECT_EQ(BaseDate(2, previous, anchor, standingAt(kNow)), anchor);
    EXPECT_EQ(BaseDate(0, previous, anchor, standingAt(kNow)), previous);
    EXPECT_EQ(BaseDate(3, previous, anchor, standingAt(kNow)), previous);
}

// A past date advances to the first of its rhythm that is not past, time of day kept; each month
// is added to the date reached, so 31 Jan -> 29 Feb -> 29 Mar. The zero date of a Null column is
// rolled where the template's task is built.
TEST(RollForward, APastDateAdvancesToTheFirstOfItsRhythmThatIsNotPast)
{
    struct Case { const char* why; Date from; const char* unit; Date now; Date rolled; };
    const Case cases[] = {
        {"yearly", Date::fromParts(2019, 4, 15, 9, 0), "yyyy", kNow, Date::fromParts(2024, 4, 15, 9, 0)},
        {"passed this year", Date::fromParts(2021, 3, 1), "yyyy", kNow, Date::fromParts(2025, 3, 1)},
        {"weekly keeps the Monday", Date::fromParts(2024, 1, 1, 8, 0), "ww", kNow, Date::fromParts(2024, 3, 18, 8, 0)},
        {"earlier today has passed", Date::fromParts(2024, 3, 14, 9, 0), "d", kNow, Date::fromParts(2024, 3, 15, 9, 0)},
        {"later today", Date::fromParts(2024, 3, 14, 18, 0), "d", kNow, Date::fromParts(2024, 3, 14, 18, 0)},
        {"the present moment", kNow, "yyyy", kNow, kNow},
        {"no date", Date::noDate(), "d", kNow, Date::noDate()},
        {"future, no unit", Date::fromParts(2030, 1, 1), "", kNow, Date::fromParts(2030, 1, 1)},
        {"monthly from 31 Jan", Date::fromParts(2024, 1, 31), "m", Date::fromParts(2024, 3, 15), Date::fromParts(2024, 3, 29)},
    };
    for (const Case& c : cases) EXPECT_EQ(RollForward(c.from, QString::fromLatin1(c.unit), standingAt(c.now)), c.rolled) << c.why;
    // No unit cannot advance a past date: the calendar refuses it.
    EXPECT_THROW(RollForward(Date::fromParts(2020, 1, 1), QString(), standingAt(kNow)), Failure);
}

TEST(RollForward, AsksTheClockAgainAtEveryTest)
{
    // A clock that moves on an hour at each reading: the rolled date must catch up with it.
    Date moving = kNow;
    int reads = 0;
    auto clock = [&] {
        const Date d = moving;
        moving = moving.add("h", 1);
        ++reads;
        return d;
    };
    const Date rolled = RollForward(kNow.add("d", -10), "d", clock);
    EXPECT_EQ(rolled, kNow.add("d", 1));
    EXPECT_EQ(reads, 12);
}

TEST(DateRule, FixedRulesRollEveryStoredDateOnItsOwn)
{
    const DateRule rule(0, Date(), "ww", standingAt(kNow));
    EXPECT_TRUE(rule.fixed());
    const Date start = Date::fromParts(2024, 3, 4, 8, 0);     // a Monday
    const Date due = Date::fromParts(2024, 3, 8, 17, 0);      // that Friday
    EXPECT_EQ(*rule.StartDate(start, 0), Date::fromParts(2024, 3, 18, 8, 0)) << "offsets play no part";
    EXPECT_EQ(rule.DueDate(due, 999), Date::fromParts(2024, 3, 15, 17, 0));
    EXPECT_EQ(rule.ReminderTime(due, 5), Date::fromParts(2024, 3, 15, 17, 0));
    EXPECT_FALSE(rule.PatternEndDate(30)) << "a fixed end date is written as it stands, by the caller";
    EXPECT_EQ(*rule.PatternStartDate(start, 0), Date::fromParts(2024, 3, 18, 8, 0));
}

TEST(DateRule, DistancesAreMinutesByTheCalendarAndPatternDaysByDayNumbers)
{
    const Date base = Date::fromParts(2024, 3, 14, 15, 30);
    const DateRule rule(1, base, "yyyy", standingAt(kNow));
    EXPECT_FALSE(rule.StartDate(Date::fromParts(2020, 1, 1), 0)) << "a start distance of 0 means no start date";
    EXPECT_EQ(*rule.StartDate(Date(), -90), Date::fromParts(2024, 3, 14, 14, 0));
    EXPECT_EQ(rule.DueDate(Date::fromParts(2020, 1, 1), 0), base) << "a due distance of 0 is the base itself";
    EXPECT_EQ(rule.DueDate(Date(), 3 * 1440 + 510), Date::fromParts(2024, 3, 18, 0, 0));
    EXPECT_EQ(rule.ReminderTime(Date(), 0), base);
    EXPECT_FALSE(rule.PatternEndDate(0));
    EXPECT_EQ(*rule.PatternEndDate(10), Date::fromParts(2024, 3, 24, 15, 30)) << "the base's time is kept";
    EXPECT_FALSE(rule.PatternStartDate(Date::fromParts(2020, 1, 1), 0));
    EXPECT_EQ(*rule.PatternStartDate(Date(), -1), Date::fromParts(2024, 3, 13, 15, 30));
}

TEST(DateRule, AnchorRulesMeasureFromTheAnchor)
{
    const Date anchor = Date::fromParts(2025, 1, 31);
    const DateRule rule(2, BaseDate(2, Date(), anchor, standingAt(kNow)), "m", standingAt(kNow));
    EXPECT_FALSE(rule.fixed());
    EXPECT_EQ(rule.DueDate(Date(), 60 * 24 * 28), Date::fromParts(2025, 2, 28));
}
