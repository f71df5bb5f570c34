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
    EXPECT_EQ(RollUnit(true, 0, {}), "d");
    EXPECT_EQ(RollUnit(true, 1, {}), "ww");
    EXPECT_EQ(RollUnit(true, 2, {}), "m");
    EXPECT_EQ(RollUnit(true, 3, {}), "m");
    EXPECT_EQ(RollUnit(true, 5, {}), "yyyy");
    EXPECT_EQ(RollUnit(true, 6, {}), "yyyy");
    EXPECT_EQ(RollUnit(true, 4, QStringLiteral("ww")), "ww");
    EXPECT_EQ(RollUnit(true, 7, QString()), "");
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

TEST(RollForward, APastDateAdvancesToTheFirstOfItsRhythmThatIsNotPast)
{
    // Yearly: 15 April of a past year comes to the next 15 April, time of day kept.
    EXPECT_EQ(RollForward(Date::fromParts(2019, 4, 15, 9, 0), "yyyy", standingAt(kNow)),
              Date::fromParts(2024, 4, 15, 9, 0));
    // 1 March has passed this year: next year's.
    EXPECT_EQ(RollForward(Date::fromParts(2021, 3, 1), "yyyy", standingAt(kNow)), Date::fromParts(2025, 3, 1));
    // Weekly keeps the weekday: a Monday stays a Monday.
    const Date monday = Date::fromParts(2024, 1, 1, 8, 0);
    const Date rolled = RollForward(monday, "ww", standingAt(kNow));
    EXPECT_EQ(rolled, Date::fromParts(2024, 3, 18, 8, 0));
    EXPECT_EQ(rolled.weekday(), monday.weekday());
}

TEST(RollForward, TimeOfDayCountsAndFutureOrNoDateValuesStayAsTheyAre)
{
    EXPECT_EQ(RollForward(Date::fromParts(2024, 3, 14, 9, 0), "d", standingAt(kNow)), Date::fromParts(2024, 3, 15, 9, 0))
        << "earlier today has passed";
    EXPECT_EQ(RollForward(Date::fromParts(2024, 3, 14, 18, 0), "d", standingAt(kNow)), Date::fromParts(2024, 3, 14, 18, 0));
    EXPECT_EQ(RollForward(kNow, "yyyy", standingAt(kNow)), kNow) << "the present moment is not in the past";
    EXPECT_EQ(RollForward(Date::noDate(), "d", standingAt(kNow)), Date::noDate());
    // No unit cannot advance a past date: the calendar refuses it.
    EXPECT_THROW(RollForward(Date::fromParts(2020, 1, 1), QString(), standingAt(kNow)), Failure);
    EXPECT_EQ(RollForward(Date::fromParts(2030, 1, 1), QString(), standingAt(kNow)), Date::fromParts(2030, 1, 1));
}

TEST(RollForward, EachMonthIsAddedToTheRolledDateSoTheDayOfMonthSticksAfterFebruary)
{
    // 31 Jan -> 29 Feb -> 29 Mar: each step adds one month to the date reached.
    EXPECT_EQ(RollForward(Date::fromParts(2024, 1, 31), "m", standingAt(Date::fromParts(2024, 3, 15))),
              Date::fromParts(2024, 3, 29));
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

TEST(RollForward, ZeroDateOfANullColumnRollsUpToThePresent)
{
    EXPECT_EQ(RollForward(Date(), "yyyy", standingAt(kNow)), Date::fromParts(2024, 12, 30));
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
