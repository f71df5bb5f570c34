// Events of the control models: raised on the user's acts and on code changes alike, as the
// windows' handlers expect.
#include "TestWindow.h"

using namespace steplets;
using namespace steplets::test;

class ControlEvents : public ::testing::Test {
protected:
    std::unique_ptr<scripted::ScriptedHost> host = hostWith();
    TestWindow w{*host};
};

TEST_F(ControlEvents, CheckBoxValueSetByCodeRaisesClickOnlyWhenItChanges) {
    std::vector<int> seen;
    w.chkOption.Click.connect([&] { seen.push_back(w.chkOption.Value()); });
    w.chkOption.setValue(CheckBox::Checked);
    w.chkOption.setValue(CheckBox::Checked);
    w.chkOption.setValue(CheckBox::Grayed);
    w.chkOption.setValue(CheckBox::Unchecked);
    EXPECT_EQ(seen, (std::vector<int>{1, 2, 0}));
    EXPECT_EQ(failureOf([&] { w.chkOption.setValue(3); }), 380);
    EXPECT_EQ(w.chkOption.Value(), 0);
}

TEST_F(ControlEvents, SelectingAnOptionClearsOnlyItsOwnGroup) {
    Counter clicks;
    w.optChoice[1].Click.connect(clicks.fn());
    w.optAlone.setValue(true);
    w.optChoice[0].setValue(true);
    w.optChoice[1].setValue(true);
    w.optChoice[1].setValue(true);   // already selected: no second Click
    EXPECT_FALSE(w.optChoice[0].Value());
    EXPECT_TRUE(w.optChoice[1].Value());
    EXPECT_TRUE(w.optAlone.Value()) << "an option in another container is another group";
    EXPECT_EQ(clicks.n, 1);
}

TEST_F(ControlEvents, TextChangeRaisesChangeAndSetsTheFlagThatOnlyCodeClears) {
    Counter changes;
    w.txtName.Change.connect(changes.fn());
    EXPECT_FALSE(w.txtName.DataChanged());
    w.txtName.setText(QStringLiteral("Ada"));
    w.txtName.setText(QStringLiteral("Ada"));
    EXPECT_EQ(changes.n, 1);
    EXPECT_TRUE(w.txtName.DataChanged());
    w.txtName.setText(QString());          // emptying is a change too, and the flag stays
    EXPECT_EQ(changes.n, 2);
    EXPECT_TRUE(w.txtName.DataChanged());
    w.txtName.setDataChanged(false);
    EXPECT_FALSE(w.txtName.DataChanged());
}

TEST_F(ControlEvents, TabStripSelectionByCodeAlwaysRaisesClick) {
    std::vector<int> seen;
    w.tabMain.Click.connect([&] { seen.push_back(w.tabMain.SelectedTab()); });
    EXPECT_EQ(w.tabMain.SelectedTab(), 1);
    w.tabMain.selectTab(1);
    w.tabMain.selectTab(2);
    EXPECT_EQ(seen, (std::vector<int>{1, 2}));
    EXPECT_EQ(failureOf([&] { w.tabMain.selectTab(3); }), 35600);
    EXPECT_EQ(failureOf([&] { (void)w.tabMain.TabCaption(0); }), 35600);
    EXPECT_EQ(w.tabMain.TabCaption(2), QStringLiteral("&Two"));
}

TEST_F(ControlEvents, CalendarValueMayBeAbsentAndTakesOnlyDates) {
    Counter clicks;
    w.calDate.Click.connect(clicks.fn());
    EXPECT_TRUE(w.calDate.Value().isNull());
    const Date d = Date::fromParts(2026, 4, 15);
    w.calDate.setValue(Value(d));
    w.calDate.setValue(Value(d));
    EXPECT_EQ(clicks.n, 1);
    EXPECT_EQ(failureOf([&] { w.calDate.setValue(Value(QStringLiteral("tomorrow"))); }), 13);
    w.calDate.setValue(Value());
    EXPECT_TRUE(w.calDate.Value().isNull());
    EXPECT_EQ(clicks.n, 2);
}

// Indexes count from one where the original controls did, and one past the end is a failure
// with the number the windows' handlers expect.
TEST_F(ControlEvents, IndexesOutsideTheControlAreFailuresWithTheirNumbers) {
    w.sbStatus.setPanelText(1, QStringLiteral("Processed:  2"));
    EXPECT_EQ(w.sbStatus.PanelText(1), QStringLiteral("Processed:  2"));
    EXPECT_EQ(&w.abTools.Bands(0).Tools(1), w.abTools.tool(QStringLiteral("Tool3")));
    EXPECT_EQ(w.control(QStringLiteral("picPage(1)")), &w.picPage[1]);
    w.pbProgress.setMax(20);
    w.pbProgress.setValue(20);

    const std::tuple<const char*, long, std::function<void()>> refused[] = {
        {"panel 3", 35600, [&] { w.sbStatus.setPanelText(3, QString()); }},
        {"panel 0", 35600, [&] { (void)w.sbStatus.PanelText(0); }},
        {"tool 2", 35600, [&] { w.abTools.Bands(0).Tools(2); }},
        {"band 1", 35600, [&] { w.abTools.Bands(1); }},
        {"option 3", 340, [&] { w.optChoice[3]; }},
        {"progress 21", 380, [&] { w.pbProgress.setValue(21); }},
    };
    for (const auto& [what, number, act] : refused) EXPECT_EQ(failureOf(act), number) << what;
    w.pbProgress.setMax(10);
    EXPECT_EQ(w.pbProgress.Value(), 10) << "a lower maximum pulls the value down";
}

TEST_F(ControlEvents, GridAddressesCellsRowByRowThroughTheFlatArray) {
    w.grdResults.setCols(4);
    w.grdResults.setRows(3);
    w.grdResults.setTextArray(4 * 2 + 3, QStringLiteral("last"));
    w.grdResults.setTextMatrix(1, 0, QStringLiteral("first"));
    EXPECT_EQ(w.grdResults.TextMatrix(2, 3), QStringLiteral("last"));
    EXPECT_EQ(w.grdResults.TextArray(4), QStringLiteral("first"));
    const std::pair<long, std::function<void()>> refused[] = {{381, [&] { w.grdResults.setTextArray(12, QString()); }},
        {30009, [&] { w.grdResults.setRow(3); }}, {30010, [&] { w.grdResults.setColWidth(4, 100); }}};
    for (const auto& [number, act] : refused) EXPECT_EQ(failureOf(act), number);

    // Growing keeps every cell where it was, although the flat index of a cell changes.
    w.grdResults.setRows(23);
    w.grdResults.setCols(5);
    EXPECT_EQ(w.grdResults.TextArray(5 * 2 + 3), QStringLiteral("last"));
    w.grdResults.setRows(2);
    EXPECT_EQ(w.grdResults.TextMatrix(1, 0), QStringLiteral("first"));
    EXPECT_EQ(failureOf([&] { (void)w.grdResults.TextMatrix(2, 3); }), 30009);
}
