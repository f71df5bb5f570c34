// Events of the control models on code changes, as the windows' handlers expect them (the user's
// acts raise them through the same setters), and the failures of indexes outside a control.
#include "TestWindow.h"

using namespace steplets;
using namespace steplets::test;

namespace {

// A test window whose value-change events are written to one log, with failures as "!number".
struct Logged {
    Logged() {
        w.chkOption.Click.connect([this] { log << QStringLiteral("chk%1").arg(w.chkOption.Value()); });
        for (int i = 0; i < 3; ++i) w.optChoice[i].Click.connect([this, i] { log << QStringLiteral("opt%1").arg(i); });
        w.optAlone.Click.connect([this] { log << "optAlone"; });
        w.txtName.Change.connect([this] { log << "txt"; });
        w.tabMain.Click.connect([this] { log << QStringLiteral("tab%1").arg(w.tabMain.SelectedTab()); });
        w.calDate.Click.connect([this] { log << "cal"; });
        w.cboPick.Click.connect([this] { log << QStringLiteral("cbo%1").arg(w.cboPick.ListIndex()); });
        w.cboPick.Change.connect([this] { log << "cboChange"; });
        w.lstTicks.Click.connect([this] { log << "lstClick"; });
        w.lstTicks.ItemCheck.connect([this](int i) { log << QStringLiteral("check%1").arg(i); });
        w.lstMulti.Click.connect([this] { log << QStringLiteral("multi%1").arg(w.lstMulti.ListIndex()); });
        for (const char* t : {"Field 1", "Field 2", "Field 3"}) w.cboPick.AddItem(QString::fromUtf8(t));
        for (const char* t : {"Call client", "File return", "Send invoice"}) w.lstTicks.AddItem(QString::fromUtf8(t));
    }
    void run(const std::function<void()>& f) {
        if (const long n = failureOf(f)) log << QStringLiteral("!%1").arg(n);
    }

    std::unique_ptr<scripted::ScriptedHost> host = hostWith();
    TestWindow w{*host};
    QStringList log;
};

struct EventCase {
    const char* what;
    std::function<void(Logged&, TestWindow&)> act;
    const char* events;
    std::function<QString(TestWindow&)> state;
    const char* expected;
};

QString flags(std::initializer_list<bool> values) {
    QString out;
    for (bool b : values) out += b ? QLatin1Char('1') : QLatin1Char('0');
    return out;
}

} // namespace

TEST(ControlEvents, CodeChangesRaiseTheEventsTheHandlersExpect) {
    const Date d = Date::fromParts(2026, 4, 15);
    const EventCase cases[] = {
        {"a check box raises Click only on a change", [](Logged& l, TestWindow& w) {
             for (int v : {1, 1, 2, 0}) w.chkOption.setValue(v);
             l.run([&] { w.chkOption.setValue(3); }); },
         "chk1 chk2 chk0 !380", [](TestWindow& w) { return QString::number(w.chkOption.Value()); }, "0"},
        {"an option clears only its own container's group", [](Logged&, TestWindow& w) {
             w.optAlone.setValue(true);
             for (int i : {0, 1, 1}) w.optChoice[i].setValue(true); },
         "optAlone opt0 opt1", [](TestWindow& w) { return flags({w.optChoice[0].Value(), w.optChoice[1].Value(), w.optAlone.Value()}); }, "011"},
        {"a text raises Change on a change, emptying too, and sets the flag", [](Logged&, TestWindow& w) {
             for (const char* t : {"Ada", "Ada", ""}) w.txtName.setText(QString::fromUtf8(t)); },
         "txt txt", [](TestWindow& w) { return flags({w.txtName.DataChanged()}); }, "1"},
        {"a tab strip raises Click on every selection by code", [](Logged& l, TestWindow& w) {
             for (int t : {1, 2, 3}) l.run([&] { w.tabMain.selectTab(t); });
             l.run([&] { (void)w.tabMain.TabCaption(0); }); },
         "tab1 tab2 !35600 !35600", [](TestWindow& w) { return w.tabMain.TabCaption(2); }, "&Two"},
        {"a calendar takes dates or no value", [&d](Logged& l, TestWindow& w) {
             for (const Value& v : {Value(d), Value(d), Value(QStringLiteral("tomorrow")), Value()}) l.run([&] { w.calDate.setValue(v); }); },
         "cal !13 cal", [](TestWindow& w) { return flags({w.calDate.Value().isNull()}); }, "1"},
        {"a drop-down list's text selects its row, exactly spelt, and raises Click even when unchanged", [](Logged& l, TestWindow& w) {
             for (const char* t : {"Field 2", "Field 2", "Field 3", "Field 9", "field 3"}) l.run([&] { w.cboPick.setText(QString::fromUtf8(t)); });
             for (int i : {0, 3}) l.run([&] { w.cboPick.setListIndex(i); }); },
         "cbo1 cbo1 cbo2 !383 !383 cbo0 !380", [](TestWindow& w) { return w.cboPick.Text(); }, "Field 1"},
        {"clearing a combo raises nothing; an editable one takes any text as a Change", [](Logged& l, TestWindow& w) {
             w.cboPick.setListIndex(1);
             w.cboPick.Clear();
             l.log << QStringLiteral("%1 %2 '%3'").arg(w.cboPick.ListCount()).arg(w.cboPick.ListIndex()).arg(w.cboPick.Text());
             w.cboPick.setStyle(ComboBox::Style::DropDownCombo);
             w.cboPick.setText(QStringLiteral("free text")); },
         "cbo1 0 -1 '' cboChange", [](TestWindow& w) { return QString::number(w.cboPick.ListIndex()); }, "-1"},
        // An untick from code moves no current row, so it raises ItemCheck but no Click.
        {"ticks by code", [](Logged&, TestWindow& w) {
             for (int i : {2, 2, 0}) w.lstTicks.setSelected(i, true);
             w.lstTicks.setDataChanged(false);
             w.lstTicks.setSelected(0, false); },
         "check2 lstClick check0 lstClick check0", [](TestWindow& w) { return QStringLiteral("%1 %2").arg(w.lstTicks.SelCount()).arg(w.lstTicks.DataChanged()); }, "1 1"},
        {"a plain list's selection follows its current row", [](Logged&, TestWindow& w) {
             w.lstMulti.setMultiSelect(ListBox::MultiSelect::None);
             for (const char* t : {"a", "b"}) w.lstMulti.AddItem(QString::fromUtf8(t));
             w.lstMulti.setSelected(1, true);
             w.lstMulti.setListIndex(0); },
         "multi1 multi0", [](TestWindow& w) { return flags({w.lstMulti.Selected(0), w.lstMulti.Selected(1)}); }, "10"},
    };
    for (const EventCase& c : cases) {
        Logged l;
        c.act(l, l.w);
        EXPECT_EQ(l.log.join(QLatin1Char(' ')), QLatin1String(c.events)) << c.what;
        EXPECT_EQ(c.state(l.w), QLatin1String(c.expected)) << c.what;
    }
}

// Rows keep their item data and the current row follows its row when rows are inserted before.
TEST(ControlEvents, RowsKeepTheirItemDataWhenRowsAreInsertedBeforeThem) {
    Logged l;
    TestWindow& w = l.w;
    for (int i = 0; i < 3; ++i) w.lstTicks.setItemData(i, 10 + i);
    w.lstTicks.setListIndex(1);
    w.lstTicks.AddItem(QStringLiteral("Agenda"), 0);
    EXPECT_EQ(w.lstTicks.NewIndex(), 0);
    EXPECT_EQ(w.lstTicks.ListIndex(), 2) << "the current row follows its row";
    EXPECT_EQ(w.lstTicks.ItemData(2), 11);
    w.lstTicks.RemoveItem(2);
    EXPECT_EQ(w.lstTicks.ListIndex(), -1);
    EXPECT_EQ(w.lstTicks.List(3), QString()) << "reading a text past the end gives the empty text";
}

// Indexes count from one where the original controls did, and one past the end is a failure
// with the number the windows' handlers expect.
TEST(ControlEvents, IndexesOutsideTheControlAreFailuresWithTheirNumbers) {
    Logged l;
    TestWindow& w = l.w;
    EXPECT_EQ(&w.abTools.Bands(0).Tools(1), w.abTools.tool(QStringLiteral("Tool3"))) << "bands and tools count from 0";
    w.pbProgress.setMax(20);
    w.pbProgress.setValue(20);
    w.grdResults.setCols(4);
    w.grdResults.setRows(3);

    const std::tuple<const char*, long, std::function<void()>> refused[] = {
        {"panel 3", 35600, [&] { w.sbStatus.setPanelText(3, QString()); }},
        {"panel 0", 35600, [&] { (void)w.sbStatus.PanelText(0); }},
        {"tool 2", 35600, [&] { w.abTools.Bands(0).Tools(2); }},
        {"band 1", 35600, [&] { w.abTools.Bands(1); }},
        {"option 3", 340, [&] { w.optChoice[3]; }},
        {"progress 21", 380, [&] { w.pbProgress.setValue(21); }},
        {"item data 3", 381, [&] { (void)w.lstTicks.ItemData(3); }},
        {"add at 9", 5, [&] { w.lstTicks.AddItem(QStringLiteral("x"), 9); }},
        {"grid cell 12", 381, [&] { w.grdResults.setTextArray(12, QString()); }},   // the grid's addressing shows in the scenarios' cells
        {"grid row 3", 30009, [&] { w.grdResults.setRow(3); }},
        {"grid column 4", 30010, [&] { w.grdResults.setColWidth(4, 100); }},
    };
    for (const auto& [what, number, act] : refused) EXPECT_EQ(failureOf(act), number) << what;
    w.pbProgress.setMax(10);
    EXPECT_EQ(w.pbProgress.Value(), 10) << "a lower maximum pulls the value down";
}

