#include "platform/runtime/DateFormats.h"
#include "platform/runtime/Int16.h"
#include "platform/runtime/Value.h"
#include "Failures.h"
#include <gtest/gtest.h>

using namespace steplets;

using steplets::test::failureOf;

TEST(Int16Counter, OverflowsOutsideSixteenBits)
{
    Int16 n(32766);
    ++n;
    EXPECT_EQ(n.value(), 32767);
    EXPECT_EQ(failureOf([&] { ++n; }), 6);
    EXPECT_EQ(n.value(), 32767) << "a failed addition leaves the counter as it was";
    EXPECT_EQ(failureOf([] { (void)(Int16(200) * Int16(200)); }), 6);
    EXPECT_EQ(failureOf([] { (void)Int16::from(-32769LL); }), 6);
    EXPECT_EQ(Int16::from(-32768LL).value(), -32768);
    EXPECT_EQ(Int16::from(2.5).value(), 2);
    EXPECT_EQ(Int16::from(3.5).value(), 4);
}

TEST(BoundedArrayAccess, BoundsAreCheckedAndAbsentUntilDimensioned)
{
    BoundedArray<QString> a;
    EXPECT_EQ(failureOf([&] { (void)a.ubound(); }), 9);
    EXPECT_EQ(failureOf([&] { (void)a[1]; }), 9);
    a.redim(1, 3);
    a[3] = "c";
    EXPECT_EQ(a.lbound(), 1);
    EXPECT_EQ(a.ubound(), 3);
    EXPECT_EQ(failureOf([&] { (void)a[0]; }), 9);
    a.redimPreserve(4);
    EXPECT_EQ(a[3], "c");
    EXPECT_EQ(a.ubound(), 4);
}

// Null fails strict conversions and reads as a default; dates become text by the general format.
TEST(ValueConversion, NullNumbersTextAndDates)
{
    const Value null;
    EXPECT_EQ(failureOf([&] { (void)null.toText(); }), 94);
    EXPECT_EQ(failureOf([&] { (void)null.toLong(); }), 94);
    EXPECT_EQ(null.textOrEmpty(), "");
    EXPECT_EQ(null.longOrZero(), 0);
    EXPECT_FALSE(null.boolOrFalse());
    EXPECT_TRUE(null.dateOrZero().isZero());
    EXPECT_EQ(Value(2.5).toLong(), 2);
    EXPECT_EQ(Value(-3.5).toLong(), -4);
    EXPECT_EQ(Value(QString(" 42 ")).toLong(), 42);
    EXPECT_EQ(failureOf([] { (void)Value("forty").toLong(); }), 13);
    EXPECT_EQ(failureOf([] { (void)Value(40000).toInt16(); }), 6);
    EXPECT_EQ(failureOf([] { (void)Value(qint64(1) << 40); }), 6);
    EXPECT_FALSE(Value("false").toBool());
    EXPECT_EQ(Value(true).toText(), "True");
    EXPECT_EQ(Value(true).toLong(), -1) << "True is minus one";
    EXPECT_EQ(failureOf([] { (void)Value("maybe").toBool(); }), 13);
    EXPECT_EQ(Value("2026-03-16T15:30:00").toDate().toIso(), "2026-03-16T15:30:00");
    EXPECT_EQ(Value(47483).toDate().toIso(), "2029-12-31T00:00:00");
    EXPECT_EQ(failureOf([] { (void)Value("someday").toDate(); }), 13);
    EXPECT_EQ(Value(1.5).toText(), "1.5");
    DateFormats::setCurrent(std::make_shared<FixedEnglishFormats>());
    EXPECT_EQ(Value(Date::fromParts(1970, 5, 4)).toText(), "5/4/1970");
    EXPECT_EQ(Value(Date::fromParts(2026, 3, 16, 15, 30, 5)).toText(), "3/16/2026 3:30:05 PM");
    EXPECT_EQ(Value(Date(0.5)).toText(), "12:00:00 PM");
}

