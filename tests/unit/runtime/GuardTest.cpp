#include "RecordingSink.h"
#include "platform/Guard.h"
#include "platform/runtime/Int16.h"
#include <gtest/gtest.h>
#include <vector>

using namespace steplets;

namespace {
class GuardTest : public ::testing::Test {
protected:
    test::RecordingSink sink;   // keeps the trail as the session does and records every report
};

bool countPastTheTop(Int16& counter)
{
    Guard g("modTest: CountPastTheTop");
    return g.orElse(false, [&] {
        g(20); counter = Int16(32766);
        g(30); ++counter;
        g(40); ++counter;
        g(50); counter = Int16(0);
        return true;
    });
}
} // namespace

TEST_F(GuardTest, OverflowIsReportedWithTheTrailAndTheStatementNumber)
{
    Int16 counter;
    EXPECT_FALSE(countPastTheTop(counter));
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_EQ(sink.failures[0].number, 6);
    EXPECT_EQ(sink.failures[0].description, "Overflow");
    EXPECT_EQ(sink.failures[0].location, "\r\nX:modTest: CountPastTheTop:Line 40");
    EXPECT_EQ(counter.value(), 32767) << "the routine left at the failing statement";
}

TEST_F(GuardTest, EntriesBeginWithALineBreakAndTheTrailRollsAtAThousandCharacters)
{
    Guard first("modTest: First");
    first.mark("modTest: First2");
    EXPECT_EQ(sink.trail(), "\r\nX:modTest: First\r\nX:modTest: First2");
    const QString name = "modTest: " + QString(40, 'a');      // 53 characters an entry with CR LF X:
    for (int i = 0; i < 30; ++i) Guard g(name);
    const QString before = sink.trail();
    ASSERT_GT(before.size(), 1000);
    Guard g("modTest: Last");
    const QString expected = before.right(1000) + "\r\nX:modTest: Last";
    EXPECT_EQ(sink.trail(), expected);
}

TEST_F(GuardTest, StepsGoOnAfterAFailureAndIgnoredStretchesKeepTheNumber)
{
    Guard g("modTest: GoOn");
    std::vector<int> done;
    g.step(20, [&] { done.push_back(20); });
    g.step(30, [&] { throw Failure::typeMismatch(); });
    g.step(40, [&] { done.push_back(40); });
    EXPECT_EQ(done, (std::vector<int>{20, 40}));
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_TRUE(sink.failures[0].location.endsWith(":Line 30"));

    EXPECT_EQ(g.ignoring(50, [] { throw Failure(-2147221233, "The item could not be found"); }), -2147221233);
    EXPECT_EQ(g.ignoring(60, [] {}), 0);
    // A test that fails in such a stretch counts as true.
    EXPECT_TRUE(g.ignoringTest(70, []() -> bool { throw Failure::typeMismatch(); }));
    EXPECT_EQ(g.lastError(), 13);
    EXPECT_FALSE(g.ignoringTest(80, [] { return false; }));
    EXPECT_EQ(g.lastError(), 0);
    EXPECT_EQ(sink.failures.size(), 1u) << "ignored failures are not reported";
}

TEST_F(GuardTest, AfterActionRunsOnlyOnFailureAndForeignExceptionsBecomeFailures)
{
    Guard g("modTest: Unloads");
    int unloaded = 0;   // that a run which succeeds skips it shows in every scenario's windows
    EXPECT_FALSE(g.run([] { throw std::runtime_error("disk on fire"); }, [&] { ++unloaded; }));
    EXPECT_EQ(unloaded, 1);
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_EQ(sink.failures[0].number, 51);
    EXPECT_TRUE(sink.failures[0].description.contains("disk on fire"));
}
