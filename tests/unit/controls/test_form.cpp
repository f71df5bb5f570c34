// Form life (Load, Activate, QueryUnload, Unload, Hide), focus and tab order, the user's acts
// on controls, and the snapshot of a window.
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
}

TEST(FormLife, RefusedUnloadByCodeReportsFalse) {
    auto host = hostWith();
    TestWindow w(*host);
    w.Load();
    w.onUnload = [](int& cancel) { cancel = 1; };
    EXPECT_FALSE(w.Unload());
    EXPECT_TRUE(w.isLoaded());
}

TEST(FormLife, HideEndsTheModalShowButKeepsTheWindowLoaded) {
    auto host = hostWith(R"([{"click": "cmdCancel"}])");
    TestWindow w(*host);
    w.cmdCancel.Click.connect([&] { w.Hide(); });
    w.Show();
    EXPECT_TRUE(w.isLoaded());
    EXPECT_FALSE(w.Visible());
    EXPECT_EQ(eventKinds(host->events()), (QStringList{"show frmTest"}));
}

TEST(FormLife, AWindowThatUnloadsItselfWhileLoadingCannotBeShown) {
    auto host = hostWith();
    TestWindow w(*host);
    w.onLoad = [&] { w.Unload(); };
    EXPECT_EQ(failureOf([&] { w.Show(); }), 364);
    EXPECT_EQ(eventKinds(host->events()), (QStringList{"unload frmTest"}));
}

TEST(FormLife, AWindowShownModallyCannotBeShownAgain) {
    auto host = hostWith(R"([{"click": "cmdOK"}, {"click": "cmdCancel"}])");
    TestWindow w(*host);
    long again = -1;
    w.cmdOK.Click.connect([&] { again = failureOf([&] { w.Show(); }); });
    w.cmdCancel.Click.connect([&] { w.Unload(); });
    w.Show();
    EXPECT_EQ(again, 400);
}

TEST(FormLife, ActivateComesAgainWhenAWindowShownOverItCloses) {
    auto host = hostWith(R"([{"form": "frmMain", "click": "cmdOK"},
                             {"form": "frmChild", "click": "cmdOK"},
                             {"form": "frmMain", "click": "chkOption"},
                             {"msgbox": "OK"},
                             {"form": "frmMain", "click": "cmdCancel"}])");
    TestWindow main(*host, QStringLiteral("frmMain"));
    TestWindow child(*host, QStringLiteral("frmChild"));
    int activations = 0;
    main.onActivate = [&] { ++activations; };
    main.cmdOK.Click.connect([&] { child.Show(); child.Unload(); });
    child.cmdOK.Click.connect([&] { child.Hide(); });
    main.chkOption.Click.connect([&] { host->MsgBox(QStringLiteral("Ticked.")); });
    main.cmdCancel.Click.connect([&] { main.Unload(); });
    main.Show();
    EXPECT_EQ(activations, 2) << "once at the show, once when the child closed, never after the message box";
}

TEST(Focus, MovesRaiseLostFocusThenGotFocus) {
    auto host = hostWith(R"([{"focus": "txtOther"}, {"type": "txtName", "text": "Ada"}, {"click": "cmdOK"}])");
    TestWindow w(*host);
    QStringList log;
    for (TextBox* t : {&w.txtName, &w.txtOther}) {
        t->GotFocus.connect([&log, t] { log << "Got " + t->name(); });
        t->LostFocus.connect([&log, t] { log << "Lost " + t->name(); });
    }
    w.cmdOK.Click.connect([&] { w.Unload(); });
    w.Show();
    // cmdOK is first in the tab order and takes the focus at the show; typing leaves the box for
    // the next control in the tab order.
    EXPECT_EQ(log, (QStringList{"Got txtOther", "Lost txtOther", "Got txtName", "Lost txtName", "Got txtOther",
                                "Lost txtOther"}));
    EXPECT_EQ(w.txtName.Text(), QStringLiteral("Ada"));
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

TEST(Focus, BeforeTheShowFocusIsAWishGrantedOnlyIfTheControlCanTakeItThen) {
    auto host = hostWith(R"([{"click": "cmdCancel"}])");
    TestWindow w(*host);
    w.cmdCancel.Click.connect([&] { w.Unload(); });
    w.onLoad = [&] {
        w.txtInPage.SetFocus();          // on a page that is disabled before the show
        w.picPage[1].setEnabled(false);
    };
    Counter inPage, first;
    w.txtInPage.GotFocus.connect(inPage.fn());
    w.cmdOK.GotFocus.connect(first.fn());
    w.Show();
    EXPECT_EQ(inPage.n, 0);
    EXPECT_EQ(first.n, 1) << "the focus went to the first tab stop instead";
    EXPECT_EQ(host->script().remaining(), 0) << "the window came up and was played";
}

TEST(Focus, FocusAskedForBeforeTheShowArrivesAfterActivate) {
    auto host = hostWith(R"([{"click": "cmdOK"}])");
    TestWindow w(*host);
    QStringList log;
    w.onLoad = [&] { w.txtOther.SetFocus(); };
    w.onActivate = [&] { log << "Activate"; };
    w.txtOther.GotFocus.connect([&] { log << "GotFocus"; });
    w.cmdOK.Click.connect([&] { w.Unload(); });
    w.Show();
    EXPECT_EQ(log, (QStringList{"Activate", "GotFocus"}));
}

TEST(Focus, TabIndexMovesAControlAndTheOthersShift) {
    auto host = hostWith();
    TestWindow w(*host);
    ASSERT_EQ(w.cmdOK.TabIndex(), 0);
    ASSERT_EQ(w.cmdCancel.TabIndex(), 1);
    w.txtName.setTabIndex(0);
    EXPECT_EQ(w.txtName.TabIndex(), 0);
    EXPECT_EQ(w.cmdOK.TabIndex(), 1);
    EXPECT_EQ(w.cmdCancel.TabIndex(), 2);
    w.txtName.setTabIndex(1000);
    EXPECT_EQ(w.txtName.TabIndex(), static_cast<int>(w.tabOrder().size()) - 1) << "a high index goes to the end";
    EXPECT_EQ(w.cmdOK.TabIndex(), 0);
}

TEST(UserActs, ClickingAHiddenOrDisabledControlCannotBeDone) {
    auto host = hostWith();
    TestWindow w(*host);
    w.Load();
    w.beginModal();   // shown, as the host marks it
    Counter clicks;
    w.cmdOK.Click.connect(clicks.fn());
    w.cmdOK.setEnabled(false);
    EXPECT_THROW(w.cmdOK.userClick(), UserActionRefused);
    w.cmdOK.setEnabled(true);
    w.cmdOK.setVisible(false);
    EXPECT_THROW(w.cmdOK.userClick(), UserActionRefused);
    w.txtName.setLocked(true);
    EXPECT_THROW(w.txtName.userType(QStringLiteral("x")), UserActionRefused);
    w.abTools.tool(QStringLiteral("Tool3"))->setEnabled(false);
    EXPECT_THROW(w.abTools.userToolClick(QStringLiteral("Tool3")), UserActionRefused);
    EXPECT_EQ(clicks.n, 0);
    w.endModal();
}

TEST(UserActs, TypingStopsAtTheLimitAndEnterPressesTheDefaultButton) {
    auto host = hostWith(R"([{"type": "txtName", "text": "0123456789"},
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

TEST(UserActs, TicksSelectionsTabsDatesAndGridRowsActAsTheMouseWould) {
    auto host = hostWith(R"([{"tick": "lstTicks", "item": "a", "checked": true},
                             {"tick": "lstTicks", "item": "a", "checked": false},
                             {"tick": "lstTicks", "item": "b", "checked": true},
                             {"select": "lstMulti", "row": 1},
                             {"select": "lstMulti", "row": 1, "selected": false},
                             {"select": "cboPick", "item": "two"},
                             {"tab": "tabMain", "index": 2},
                             {"date": "calDate", "value": "2026-04-15"},
                             {"dblclick": "grdResults", "row": 1},
                             {"toolclick": "abTools", "tool": "Tool0"},
                             {"form": "frmTest", "close": true}])");
    TestWindow w(*host);
    w.lstTicks.setStyle(ListBox::Style::CheckBox);
    for (auto* l : {&w.lstTicks, &w.lstMulti}) { l->AddItem("a"); l->AddItem("b"); }
    w.cboPick.AddItem("one");
    w.cboPick.AddItem("two");
    QStringList log;
    w.lstTicks.Click.connect([&] { log << QStringLiteral("lstTicks %1").arg(w.lstTicks.ListIndex()); });
    w.lstMulti.Click.connect([&] { log << QStringLiteral("lstMulti %1").arg(w.lstMulti.SelCount()); });
    w.cboPick.Click.connect([&] { log << "cboPick " + w.cboPick.Text(); });
    w.tabMain.MouseDown.connect([&](int, int, double, double) { log << "tabMain down"; });
    w.tabMain.Click.connect([&] { log << QStringLiteral("tabMain %1").arg(w.tabMain.SelectedTab()); });
    w.calDate.Click.connect([&] { log << "calDate " + w.calDate.Value().toDate().toIso(); });
    w.grdResults.DblClick.connect([&] { log << QStringLiteral("grid %1").arg(w.grdResults.Row()); });
    w.abTools.ToolClick.connect([&](Tool& t) { log << QStringLiteral("tool %1").arg(t.ToolID()); });
    w.Show();
    EXPECT_EQ(log, (QStringList{"lstTicks 0", "lstTicks 0", "lstTicks 1", "lstMulti 1", "lstMulti 0", "cboPick two", "tabMain down", "tabMain 2",
                                "calDate 2026-04-15T00:00:00", "grid 1", "tool 0"}));
    EXPECT_TRUE(w.lstTicks.Selected(1));
    EXPECT_FALSE(w.lstTicks.Selected(0)) << "the user's untick raised Click like the tick";
    EXPECT_TRUE(w.lstTicks.DataChanged());
}

TEST(Snapshot, RecordsTheMembersThatApplyToEachKind) {
    auto host = hostWith();
    TestWindow w(*host);
    w.chkOption.setCaption(QStringLiteral(" &Tick"));
    w.chkOption.setValue(1);
    w.chkOption.setToolTipText(QStringLiteral("Tip."));
    w.txtName.setText(QStringLiteral("Ada"));
    w.txtName.setLocked(true);
    w.lstTicks.AddItem(QStringLiteral("row"));
    w.lstTicks.setItemData(0, 7);
    w.lstTicks.setSelected(0, true);
    w.sbStatus.setPanelText(1, QStringLiteral("Saved:  1"));
    w.pbProgress.setMax(20);
    w.pbProgress.setValue(5);
    w.grdResults.setTextMatrix(0, 1, QStringLiteral("Due Date"));
    w.abTools.tool(QStringLiteral("Tool3"))->setEnabled(false);
    const QJsonObject snap = w.snapshot();
    EXPECT_EQ(snap.value("form").toString(), QStringLiteral("frmTest"));
    EXPECT_FALSE(snap.value("visible").toBool());
    const QJsonObject c = snap.value("controls").toObject();
    const QJsonObject chk = c.value("chkOption").toObject();
    EXPECT_EQ(chk.value("caption").toString(), QStringLiteral(" &Tick"));
    EXPECT_EQ(chk.value("value").toInt(), 1);
    EXPECT_EQ(chk.value("toolTip").toString(), QStringLiteral("Tip."));
    EXPECT_TRUE(chk.value("tabStop").toBool());
    EXPECT_EQ(c.value("txtName").toObject().value("text").toString(), QStringLiteral("Ada"));
    EXPECT_TRUE(c.value("txtName").toObject().value("locked").toBool());
    EXPECT_EQ(c.value("lstTicks").toObject().value("items").toArray().at(0).toObject(),
              (QJsonObject{{"text", "row"}, {"itemData", 7}, {"checked", true}}));
    EXPECT_FALSE(c.value("optChoice(1)").toObject().value("value").toBool());
    EXPECT_TRUE(c.value("calDate").toObject().value("value").isNull());
    EXPECT_EQ(c.value("tabMain").toObject().value("tabs").toArray(), (QJsonArray{"&One", "&Two"}));
    EXPECT_EQ(c.value("sbStatus").toObject().value("panels").toArray(), (QJsonArray{"Saved:  1", ""}));
    EXPECT_EQ(c.value("pbProgress").toObject().value("progress").toInt(), 5);
    EXPECT_EQ(c.value("pbProgress").toObject().value("max").toInt(), 20);
    EXPECT_EQ(c.value("grdResults").toObject().value("cells").toArray().at(0).toArray().at(1).toString(), QStringLiteral("Due Date"));
    EXPECT_FALSE(c.value("abTools").toObject().value("tools").toObject().value("Tool3").toObject().value("enabled").toBool());
    EXPECT_FALSE(c.value("lblInfo").toObject().contains("tabStop")) << "a label takes no focus";
    EXPECT_TRUE(c.value("lblInfo").toObject().contains("tabIndex"));
    EXPECT_FALSE(c.value("Timer1").toObject().contains("tabIndex"));
}
