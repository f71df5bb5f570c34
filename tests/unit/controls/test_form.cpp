// Form life (Load, Activate, QueryUnload, Unload), focus refusals, and the user's acts on
// controls that the scenarios do not play.
#include "TestWindow.h"
#include <QJsonArray>

using namespace steplets;
using namespace steplets::test;

namespace {
QStringList eventKinds(const QJsonArray& events) {
    QStringList out;
    for (const auto& e : events)
        for (const QString& k : e.toObject().keys())
            if (k != QLatin1String("at") && k != QLatin1String("caption")) out << k + QLatin1Char(' ') + e.toObject().value(k).toString();
    return out;
}
} // namespace

TEST(FormLife, ShowLoadsActivatesAndReturnsWhenAHandlerUnloadsItsOwnWindow) {
    auto host = hostWith(R"([{"form": "frmTest", "click": "cmdOK"}])");
    TestWindow w(*host);
    QStringList log;
    w.onLoad = [&] { log << "Load"; };
    w.onActivate = [&] { log << "Activate"; };
    w.onQueryUnload = [&](int&, int mode) { log << QStringLiteral("QueryUnload %1").arg(mode); };
    w.onUnload = [&](int&) { log << "Unload"; };
    w.cmdOK.Click.connect([&] {
        w.Unload();
        log << "after Unload";   // the handler goes on normally
    });
    w.Show();
    EXPECT_EQ(log, (QStringList{"Load", "Activate", "QueryUnload 1", "Unload", "after Unload"}));
    EXPECT_FALSE(w.isLoaded());
    EXPECT_FALSE(w.Visible());
    EXPECT_EQ(eventKinds(host->events()), (QStringList{"show frmTest", "unload frmTest"}));
    EXPECT_EQ(host->events()[0].toObject().value("caption").toString(), QStringLiteral(" Test Window"));
}

TEST(FormLife, RefusedQueryUnloadKeepsTheWindowOpen) {
    auto host = hostWith(R"([{"form": "frmTest", "close": true},
                             {"form": "frmTest", "click": "chkOption"},
                             {"form": "frmTest", "close": true}])");
    TestWindow w(*host);
    std::vector<int> modes;
    w.onQueryUnload = [&](int& cancel, int mode) {
        modes.push_back(mode);
        cancel = w.chkOption.Value() == 0 ? 1 : 0;   // refuses until the box is ticked
    };
    w.Show();
    EXPECT_EQ(modes, (std::vector<int>{Form::FormControlMenu, Form::FormControlMenu}));
    EXPECT_FALSE(w.isLoaded());
    EXPECT_EQ(host->script().remaining(), 0);

    w.Load();
    w.onUnload = [](int& cancel) { cancel = 1; };
    EXPECT_FALSE(w.Unload()) << "an Unload by code that Form_Unload refuses reports False";
    EXPECT_TRUE(w.isLoaded());
}

TEST(FormLife, AWindowUnloadedWhileLoadingOrAlreadyShownCannotBeShown) {
    auto host = hostWith(R"([{"click": "cmdOK"}, {"click": "cmdCancel"}])");
    TestWindow w(*host);
    w.onLoad = [&] { w.Unload(); };
    EXPECT_EQ(failureOf([&] { w.Show(); }), 364);
    EXPECT_EQ(eventKinds(host->events()), (QStringList{"unload frmTest"}));
    w.onLoad = nullptr;
    long again = -1;
    w.cmdOK.Click.connect([&] { again = failureOf([&] { w.Show(); }); });
    w.cmdCancel.Click.connect([&] { w.Unload(); });
    w.Show();
    EXPECT_EQ(again, 400);
}

TEST(Focus, SetFocusOnAControlThatCannotTakeItIsFailure5) {
    auto host = hostWith();
    TestWindow w(*host);
    w.Load();
    EXPECT_EQ(failureOf([&] { w.SetFocus(); }), 5) << "the window is not shown";
    w.beginModal();   // shown, as the host marks it
    w.txtName.setVisible(false);
    EXPECT_EQ(failureOf([&] { w.txtName.SetFocus(); }), 5);
    w.picPage[1].setEnabled(false);
    EXPECT_EQ(failureOf([&] { w.txtInPage.SetFocus(); }), 5) << "a control on a disabled page cannot take the focus";
    EXPECT_EQ(failureOf([&] { w.lblInfo.SetFocus(); }), 5);
    w.txtOther.SetFocus();
    EXPECT_TRUE(w.txtOther.hasFocus());
    w.endModal();
}

TEST(UserActs, ClickingAHiddenOrDisabledControlCannotBeDone) {
    auto host = hostWith();
    TestWindow w(*host);
    w.Load();
    w.beginModal();   // shown, as the host marks it
    Counter clicks;
    w.cmdOK.Click.connect(clicks.fn());
    const std::function<void()> refused[] = {
        [&] { w.cmdOK.setEnabled(false); w.cmdOK.userClick(); },
        [&] { w.cmdOK.setEnabled(true); w.cmdOK.setVisible(false); w.cmdOK.userClick(); },
        [&] { w.txtName.setLocked(true); w.txtName.userType(QStringLiteral("x")); },
        [&] { w.abTools.tool(QStringLiteral("Tool3"))->setEnabled(false); w.abTools.userToolClick(QStringLiteral("Tool3")); }};
    for (const auto& act : refused) EXPECT_THROW(act(), UserActionRefused);
    EXPECT_EQ(clicks.n, 0);
    w.endModal();
}

TEST(UserActs, TypingStopsAtTheLimitAndEnterPressesTheDefaultButton) {
    auto host = hostWith(R"([{"focus": "txtOther"}, {"type": "txtName", "text": "0123456789"},
                             {"key": "txtName", "keyCode": 13},
                             {"key": "txtOther", "keyCode": 65, "shift": true}])");
    TestWindow w(*host);
    w.txtName.setMaxLength(4);
    std::vector<std::pair<int, int>> keys;
    w.txtName.KeyDown.connect([&](int& k, int s) { keys.emplace_back(k, s); });
    w.txtOther.KeyDown.connect([&](int& k, int s) { keys.emplace_back(k, s); });
    w.cmdOK.Click.connect([&] { w.cmdOK.setCaption(QStringLiteral("pressed")); });
    w.txtOther.KeyDown.connect([&](int&, int) { w.Unload(); });
    w.Show();
    EXPECT_EQ(w.txtName.Text(), QStringLiteral("0123"));
    EXPECT_EQ(w.cmdOK.Caption(), QStringLiteral("pressed"));
    EXPECT_EQ(keys, (std::vector<std::pair<int, int>>{{65, 1}})) << "Enter went to the default button";
}

