#include "platform/runtime/DateFormats.h"
#include <gtest/gtest.h>

using namespace steplets;

namespace {
const Date kAfternoon = Date::fromParts(2026, 3, 16, 15, 30);
const Date kMorning = Date::fromParts(2026, 12, 5, 9, 5);
}

TEST(FixedEnglishFormats, RendersTheScenarioForms)
{
    FixedEnglishFormats f;
    EXPECT_EQ(f.format(kAfternoon, "Short Date"), "3/16/2026");
    EXPECT_EQ(f.format(kAfternoon, "Medium Date"), "16-Mar-26");
    EXPECT_EQ(f.format(kAfternoon, "Medium Time"), "03:30 PM");
    EXPECT_EQ(f.format(kMorning, "Short Date"), "12/5/2026");
    EXPECT_EQ(f.format(kMorning, "Medium Date"), "05-Dec-26");
    EXPECT_EQ(f.format(kMorning, "Medium Time"), "09:05 AM");
    EXPECT_EQ(f.format(Date::fromParts(2026, 3, 16, 0, 5), "Medium Time"), "12:05 AM");
    EXPECT_EQ(f.format(kMorning, "dddd"), "Saturday");
}

