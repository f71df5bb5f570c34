// List boxes, combo boxes and the contact combo: rows with item data, selection and ticks that
// raise Click, the changed flag, and a drop-down list that takes only its own texts.
#include "TestWindow.h"

using namespace steplets;
using namespace steplets::test;

class Lists : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* t : {"Field 1", "Field 2", "Field 3"}) w.cboPick.AddItem(QString::fromUtf8(t));
        const char* rows[] = {"Call client", "File return", "Send invoice"};
        for (int i = 0; i < 3; ++i) {
            w.lstTicks.AddItem(QString::fromUtf8(rows[i]));
            w.lstTicks.setItemData(w.lstTicks.NewIndex(), 10 + i);
        }
    }
    std::unique_ptr<scripted::ScriptedHost> host = hostWith();
    TestWindow w{*host};
};

// A drop-down list's text selects its row and raises Click even when unchanged; a text not in
// the list, in any other spelling, is a failure that changes nothing.
TEST_F(Lists, ComboTextSelectsItsRowOrIsAFailureThatChangesNothing) {
    std::vector<int> seen;
    w.cboPick.Click.connect([&] { seen.push_back(w.cboPick.ListIndex()); });
    w.cboPick.setText(QStringLiteral("Field 2"));
    w.cboPick.setText(QStringLiteral("Field 2"));
    w.cboPick.setListIndex(0);
    EXPECT_EQ(w.cboPick.Text(), QStringLiteral("Field 1"));
    w.cboPick.setText(QStringLiteral("Field 3"));
    EXPECT_EQ(failureOf([&] { w.cboPick.setText(QStringLiteral("Field 9")); }), 383);
    EXPECT_EQ(failureOf([&] { w.cboPick.setText(QStringLiteral("field 3")); }), 383) << "texts compare exactly";
    EXPECT_EQ(failureOf([&] { w.cboPick.setListIndex(3); }), 380);
    EXPECT_EQ(w.cboPick.Text(), QStringLiteral("Field 3"));
    EXPECT_EQ(seen, (std::vector<int>{1, 1, 0, 2}));
}

// Clearing empties the text without an event; an editable combo then takes any text as a Change.
TEST_F(Lists, ClearingAComboIsSilentAndAnEditableOneTakesAnyText) {
    Counter changes, clicks;
    w.cboPick.setListIndex(1);
    w.cboPick.Change.connect(changes.fn());
    w.cboPick.Click.connect(clicks.fn());
    w.cboPick.Clear();
    EXPECT_EQ(w.cboPick.ListCount(), 0);
    EXPECT_EQ(w.cboPick.ListIndex(), -1);
    EXPECT_TRUE(w.cboPick.Text().isEmpty());
    w.cboPick.setStyle(ComboBox::Style::DropDownCombo);
    w.cboPick.setText(QStringLiteral("free text"));
    EXPECT_EQ(w.cboPick.ListIndex(), -1);
    EXPECT_EQ(changes.n, 1);
    EXPECT_EQ(clicks.n, 0);
}

TEST_F(Lists, CodeTicksRaiseItemCheckAndClickUnticksOnlyItemCheckBothSetTheChangedFlag) {
    std::vector<int> checked;
    Counter clicks;
    w.lstTicks.ItemCheck.connect([&](int i) { checked.push_back(i); });
    w.lstTicks.Click.connect(clicks.fn());
    w.lstTicks.setSelected(2, true);
    w.lstTicks.setSelected(2, true);
    w.lstTicks.setSelected(0, true);
    EXPECT_EQ(checked, (std::vector<int>{2, 0}));
    EXPECT_EQ(clicks.n, 2);
    EXPECT_EQ(w.lstTicks.SelCount(), 2);
    EXPECT_TRUE(w.lstTicks.DataChanged());
    w.lstTicks.setDataChanged(false);
    w.lstTicks.setSelected(0, false);
    EXPECT_TRUE(w.lstTicks.DataChanged());
    EXPECT_EQ(w.lstTicks.SelCount(), 1);
    EXPECT_EQ(checked, (std::vector<int>{2, 0, 0})) << "an untick from code is an ItemCheck";
    EXPECT_EQ(clicks.n, 2) << "an untick from code moves no current row, so it raises no Click";
}

TEST_F(Lists, RowsKeepTheirItemDataWhenRowsAreInsertedBeforeThem) {
    w.lstTicks.setListIndex(1);
    w.lstTicks.AddItem(QStringLiteral("Agenda"), 0);
    EXPECT_EQ(w.lstTicks.NewIndex(), 0);
    EXPECT_EQ(w.lstTicks.ListIndex(), 2) << "the current row follows its row";
    EXPECT_EQ(w.lstTicks.ItemData(2), 11);
    w.lstTicks.RemoveItem(2);
    EXPECT_EQ(w.lstTicks.ListIndex(), -1);
    EXPECT_EQ(failureOf([&] { (void)w.lstTicks.ItemData(3); }), 381);
    EXPECT_EQ(w.lstTicks.List(3), QString()) << "reading a text past the end gives the empty text";
    EXPECT_EQ(failureOf([&] { w.lstTicks.AddItem(QStringLiteral("x"), 9); }), 5);
}

TEST_F(Lists, PlainListSelectionFollowsTheCurrentRow) {
    ListBox& plain = w.lstMulti;
    plain.setMultiSelect(ListBox::MultiSelect::None);
    plain.AddItem(QStringLiteral("a"));
    plain.AddItem(QStringLiteral("b"));
    Counter clicks;
    plain.Click.connect(clicks.fn());
    plain.setSelected(1, true);
    EXPECT_EQ(plain.ListIndex(), 1);
    plain.setListIndex(0);
    EXPECT_FALSE(plain.Selected(1));
    EXPECT_TRUE(plain.Selected(0));
    EXPECT_EQ(clicks.n, 2);
}
