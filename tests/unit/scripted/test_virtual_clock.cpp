// The virtual clock: time moves only from timer to timer or by a scripted wait, never in real time.
#include "TestWindow.h"
#include <QElapsedTimer>

using namespace steplets;
using namespace steplets::test;

class VirtualTime : public ::testing::Test {
protected:
    std::unique_ptr<scripted::ScriptedHost> host = hostWith();
    TestWindow w{*host};
    std::vector<QString> ticks;
    void SetUp() override {
        w.Load();
        w.Timer1.Tick.connect([this] { ticks.push_back(host->clock().stamp()); });
    }
};

TEST_F(VirtualTime, ATimerOf100msFires20TimesIn2VirtualSecondsAndNoRealTime) {
    QElapsedTimer real;
    real.start();
    w.Timer1.setInterval(100);
    w.Timer1.setEnabled(true);
    host->clock().advance(2000);
    EXPECT_EQ(ticks.size(), 20u);
    EXPECT_EQ(ticks.front(), QStringLiteral("2026-03-16T15:30:00.100"));
    EXPECT_EQ(ticks.back(), QStringLiteral("2026-03-16T15:30:02"));
    EXPECT_EQ(host->Now(), Date::fromParts(2026, 3, 16, 15, 30, 2));
    EXPECT_LT(real.elapsed(), 1000) << "two virtual seconds must not be waited for";
}

TEST_F(VirtualTime, YieldingLetsTheClockReachTheNextTimer) {
    // The pacing loop of a processing run: yield until the timer has switched itself off.
    w.Timer1.setInterval(100);
    w.Timer1.Tick.connect([this] { if (ticks.size() == 20) w.Timer1.setEnabled(false); });
    w.Timer1.setEnabled(true);
    while (w.Timer1.Enabled()) host->DoEvents();
    EXPECT_EQ(ticks.size(), 20u);
    EXPECT_EQ(host->clock().elapsedMs(), 2000);
    host->DoEvents();   // nothing left to fire: the clock stands still
    EXPECT_EQ(host->clock().elapsedMs(), 2000);
}

TEST_F(VirtualTime, TimersTickOnlyWhileEnabledWithAnIntervalInALoadedWindow) {
    w.Timer1.setEnabled(true);
    host->clock().advance(5000);
    EXPECT_TRUE(ticks.empty()) << "interval 0 never ticks";
    w.Timer1.setInterval(1000);
    host->clock().advance(1500);
    EXPECT_EQ(ticks.size(), 1u);
    w.Timer1.setEnabled(false);
    host->clock().advance(5000);
    EXPECT_EQ(ticks.size(), 1u);
    w.Timer1.setEnabled(true);
    w.Unload();
    host->clock().advance(5000);
    EXPECT_EQ(ticks.size(), 1u) << "an unloaded window's timer does not tick";
    EXPECT_FALSE(host->clock().hasTimer());
}

TEST_F(VirtualTime, SettingTheIntervalRestartsTheCountdown) {
    w.Timer1.setInterval(1000);
    w.Timer1.setEnabled(true);
    host->clock().advance(900);
    w.Timer1.setInterval(1000);
    host->clock().advance(900);
    EXPECT_TRUE(ticks.empty());
    host->clock().advance(100);
    EXPECT_EQ(ticks, (std::vector<QString>{QStringLiteral("2026-03-16T15:30:01.900")}));
}

TEST_F(VirtualTime, TimersFireInOrderOfTimeAndTiesInTheOrderTheyWereScheduled) {
    TestWindow other(*host, QStringLiteral("frmOther"));
    other.Load();
    std::vector<QString> order;
    w.Timer1.Tick.connect([&] { order.push_back("fast"); });
    other.Timer1.Tick.connect([&] { order.push_back("slow"); });
    other.Timer1.setInterval(250);
    other.Timer1.setEnabled(true);
    w.Timer1.setInterval(100);
    w.Timer1.setEnabled(true);
    host->clock().advance(500);
    // At 500 ms both fall due; the slow one was scheduled at 250 ms, the fast one at 400 ms.
    EXPECT_EQ(order, (std::vector<QString>{"fast", "fast", "slow", "fast", "fast", "slow", "fast"}));
}

TEST_F(VirtualTime, AHandlerThatYieldsDoesNotReenterItsOwnTimer) {
    int depth = 0, deepest = 0;
    w.Timer1.Tick.connect([&] {
        ++depth;
        deepest = std::max(deepest, depth);
        host->DoEvents();
        --depth;
    });
    w.Timer1.setInterval(100);
    w.Timer1.setEnabled(true);
    host->clock().advance(300);
    EXPECT_EQ(deepest, 1);
}
