#include "platform/runtime/Date.h"
#include "platform/runtime/DateFormats.h"
#include "platform/runtime/Failure.h"
#include "Failures.h"
#include <gtest/gtest.h>

using steplets::Date;
using steplets::FixedEnglishFormats;
using steplets::Failure;

namespace {
Date at(const char* iso) { return *Date::fromIso(QString::fromLatin1(iso)); }
}

TEST(DateSerial, CountsDaysFromTheEpochWithTimeAsFractionAndReadsIso)
{
    EXPECT_EQ(Date().toIso(), "1899-12-30T00:00:00");
    EXPECT_DOUBLE_EQ(Date::fromParts(2029, 12, 31).serial(), 47483.0);
    EXPECT_DOUBLE_EQ(Date::fromParts(2026, 3, 16, 18).serial(), 46097.75);
    EXPECT_EQ(Date::noDate().toIso(), "4501-01-01T00:00:00");
    EXPECT_TRUE(at("4501-01-01T00:00:00").isNoDate());
    // Before the epoch the fraction still counts forward from midnight.
    EXPECT_EQ(Date(-1.25).toIso(), "1899-12-29T06:00:00");
    EXPECT_LT(Date(-1.25), Date(-1.0).plusDays(0.5));
    // ISO texts round-trip, and nonsense is no date.
    EXPECT_EQ(at("2026-03-16T15:30:03.100").toIso(), "2026-03-16T15:30:03.100");
    EXPECT_EQ(at("2026-03-16 08:05:09").toIso(), "2026-03-16T08:05:09");
    EXPECT_FALSE(Date::fromIso("2026-02-30").has_value());
    EXPECT_FALSE(Date::fromIso("16/03/2026").has_value());
    EXPECT_FALSE(Date::fromIso("2026-03-16T25:00:00").has_value());
    EXPECT_EQ(at("2026-03-16T15:30:00").weekday(), 2);  // Monday
    EXPECT_EQ(at("2026-03-16T15:30:00").datePart().toIso(), "2026-03-16T00:00:00");
}

// Months clip to the end of the month.
TEST(DateAdd, EachUnit)
{
    EXPECT_EQ(at("2025-01-31T09:15:00").add("m", 1).toIso(), "2025-02-28T09:15:00");
    EXPECT_EQ(at("2024-01-31").add("m", 1).toIso(), "2024-02-29T00:00:00");
    EXPECT_EQ(at("2024-02-29").add("yyyy", 1).toIso(), "2025-02-28T00:00:00");
    EXPECT_EQ(at("2026-11-30").add("q", 1).toIso(), "2027-02-28T00:00:00");
    EXPECT_EQ(at("2026-12-31T23:30:00").add("n", 45).toIso(), "2027-01-01T00:15:00");
    EXPECT_EQ(at("2026-03-16").add("ww", 2).toIso(), "2026-03-30T00:00:00");
    EXPECT_EQ(at("2026-03-16").add("d", -16).toIso(), "2026-02-28T00:00:00");
    EXPECT_EQ(at("2026-03-16").add("h", 36).toIso(), "2026-03-17T12:00:00");
    EXPECT_EQ(steplets::test::failureOf([] { (void)at("2026-03-16").add("fortnight", 1); }), 5) << "an unknown unit";
    EXPECT_THROW((void)at("9999-12-31").add("d", 1), Failure);
}

// Differences count boundaries, not elapsed time.
TEST(DateDiff, EachUnit)
{
    const Date now = at("2026-03-16T15:30:00");
    EXPECT_EQ(Date::diff("n", now, at("2026-03-17T00:00:00")), 510);
    EXPECT_EQ(Date::diff("n", at("2026-03-16T15:30:59"), at("2026-03-16T15:31:00")), 1);
    EXPECT_EQ(Date::diff("n", at("2026-03-16T23:59:30"), at("2026-03-17T00:00:10")), 1);
    EXPECT_EQ(Date::diff("n", now, at("2026-03-15T15:30:00")), -1440);
    EXPECT_EQ(Date::diff("d", at("2026-03-16T23:59:00"), at("2026-03-17T00:01:00")), 1);
    EXPECT_EQ(Date::diff("m", at("2026-01-31"), at("2026-02-01")), 1);
    EXPECT_EQ(Date::diff("yyyy", at("2026-12-31"), at("2027-01-01")), 1);
    // 2026-03-16 is a Monday: the next Sunday is the first week boundary.
    EXPECT_EQ(Date::diff("ww", at("2026-03-16"), at("2026-03-21")), 0);
    EXPECT_EQ(Date::diff("ww", at("2026-03-16"), at("2026-03-22")), 1);
    EXPECT_EQ(Date::diff("w", at("2026-03-16"), at("2026-03-29")), 1);
}

// The forms the scenarios and processing tests do not already show.
TEST(FixedEnglishFormats, RendersTheScenarioForms)
{
    FixedEnglishFormats f;
    const Date morning = Date::fromParts(2026, 12, 5, 9, 5);
    EXPECT_EQ(f.format(morning, "Short Date"), "12/5/2026");
    EXPECT_EQ(f.format(morning, "Medium Date"), "05-Dec-26");
    EXPECT_EQ(f.format(morning, "Medium Time"), "09:05 AM");
    EXPECT_EQ(f.format(Date::fromParts(2026, 3, 16, 0, 5), "Medium Time"), "12:05 AM");
    EXPECT_EQ(f.format(morning, "dddd"), "Saturday");
}

