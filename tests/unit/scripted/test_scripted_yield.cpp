// The scripted user acting while the component yields: a wait that runs out in the middle of
// paced work hands the following steps to the active window at that moment, as a person's clicks
// get in between the ticks of a pause.
#include "TestWindow.h"
#include <QJsonArray>

using namespace steplets;
using namespace steplets::test;

namespace {

// A window that starts two seconds of paced work one second after it is shown, yields until the
// pacing timer has ticked 20 times, and refuses to close while the work runs.
class PacedWindow : public TestWindow {
public:
    explicit PacedWindow(scripted::ScriptedHost& host) : TestWindow(host), m_host(host) {
        Timer1.setInterval(1000);
        Timer2.setInterval(100);
        Timer2.setEnabled(false);
        onActivate = [this] { Timer1.setEnabled(true); };
        onQueryUnload = [this](int& cancel, int) { if (busy) cancel = 1; };
        Timer1.Tick.connect([this] { work(); });
        Timer2.Tick.connect([this] {
            if (++ticks == 20) Timer2.setEnabled(false);
            pbProgress.setValue(ticks);
        });
        cmdCancel.Click.connect([this] { Unload(); });
    }

    Timer Timer2{*this, QStringLiteral("Timer2")};
    bool busy = false;
    int ticks = 0;

private:
    void work() {
        Timer1.setEnabled(false);
        busy = true;
        Timer2.setEnabled(true);
        while (Timer2.Enabled()) m_host.DoEvents();
        busy = false;
        lblInfo.setCaption(QStringLiteral("done"));
    }

    scripted::ScriptedHost& m_host;
};

QJsonArray eventsWith(const scripted::ScriptedHost& host, const QString& key) {
    QJsonArray found;
    for (const auto& e : host.events())
        if (e.toObject().contains(key)) found.append(e);
    return found;
}

QJsonObject controlIn(const QJsonValue& snapshotEvent, const QString& control) {
    return snapshotEvent.toObject().value("snapshot").toObject().value("controls").toObject().value(control).toObject();
}

} // namespace

TEST(ScriptedYield, AWaitRunningOutInAPauseLetsTheFollowingStepsActThere) {
    auto host = hostWith(R"([{"wait": 2}, {"form": "frmTest", "snapshot": true}, {"form": "frmTest", "close": true},
                             {"wait": 5}, {"form": "frmTest", "close": true}])");
    PacedWindow w(*host);
    w.Show();
    const QJsonArray snaps = eventsWith(*host, "snapshot");
    ASSERT_EQ(snaps.size(), 1);
    // Taken at the tick on which the wait ran out, half-way through the pause.
    EXPECT_EQ(snaps[0].toObject().value("at").toString(), QStringLiteral("2026-03-16T15:30:02"));
    EXPECT_EQ(controlIn(snaps[0], "pbProgress").value("progress").toInt(), 10);
    EXPECT_EQ(controlIn(snaps[0], "lblInfo").value("caption").toString(), QString());
    // The close in the pause was refused; the one after the second wait closed the window.
    const QJsonArray unloads = eventsWith(*host, "unload");
    ASSERT_EQ(unloads.size(), 1);
    EXPECT_EQ(unloads[0].toObject().value("at").toString(), QStringLiteral("2026-03-16T15:30:08"));
    EXPECT_TRUE(host->script().atEnd());
}

TEST(ScriptedYield, AWaitRunningOutAfterTheWorkLeavesTheStepsToTheWindowsOwnTurn) {
    auto host = hostWith(R"([{"wait": 10}, {"form": "frmTest", "snapshot": true}, {"form": "frmTest", "close": true}])");
    PacedWindow w(*host);
    w.Show();
    const QJsonArray snaps = eventsWith(*host, "snapshot");
    ASSERT_EQ(snaps.size(), 1);
    EXPECT_EQ(snaps[0].toObject().value("at").toString(), QStringLiteral("2026-03-16T15:30:10"));
    EXPECT_EQ(controlIn(snaps[0], "lblInfo").value("caption").toString(), QStringLiteral("done"));
    EXPECT_EQ(eventsWith(*host, "unload").size(), 1);
}

TEST(ScriptedYield, StepsForAnotherTargetWaitForTheirTurnAfterThePause) {
    auto host = hostWith(R"([{"wait": 2}, {"msgbox": "OK"}, {"form": "frmTest", "close": true}])");
    PacedWindow w(*host);
    // The box comes after the work; the wait ran out in the pause, but its step was not for the window.
    bool boxShown = false;
    w.Timer1.Tick.connect([&] { boxShown = true; host->MsgBox(QStringLiteral("Finished.")); });
    w.Show();
    EXPECT_TRUE(boxShown);
    const QJsonArray boxes = eventsWith(*host, "msgbox");
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes[0].toObject().value("at").toString(), QStringLiteral("2026-03-16T15:30:03"));
    EXPECT_EQ(eventsWith(*host, "unload").size(), 1);
}
