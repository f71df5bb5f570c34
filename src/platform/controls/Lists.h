#pragma once
// List box (plain, with a check box per row, or multi-select), combo box (drop-down list or
// drop-down combo) and the in-memory contact combo. Rows carry a text and a 32-bit item data.
// Selecting a row, ticking a row or setting a drop-down list's Text raises Click, whether the
// user or code does it; a Text that is not in a drop-down list is a failure.
#include "Control.h"
#include <QJsonArray>
#include <vector>

namespace steplets {

// The rows that the three kinds share.
class ItemRows {
public:
    struct Row {
        QString text;
        qint32 itemData = 0;
        bool selected = false;            // ticked, in a list with check boxes
    };
    int count() const { return static_cast<int>(m_rows.size()); }
    // Inserts at `index`, or appends for -1; an index past the end is failure 5. Returns the index.
    int add(const QString& text, int index = -1);
    void remove(int index);               // failure 5 outside the rows
    void clear() { m_rows.clear(); }
    QString text(int index) const;        // "" outside the rows, as the run-time reads it
    Row& at(int index);                   // failure 381 outside the rows
    const Row& at(int index) const { return const_cast<ItemRows*>(this)->at(index); }
    // The first row with exactly this text, -1 for none.
    int find(const QString& text) const;
    const std::vector<Row>& rows() const { return m_rows; }

private:
    std::vector<Row> m_rows;
};

class ListBox : public Control {
public:
    enum class Style { Standard, CheckBox };
    enum class MultiSelect { None, Simple, Extended };
    using Control::Control;
    Kind kind() const override { return Kind::ListBox; }

    Style style() const { return m_style; }
    void setStyle(Style s) { m_style = s; }
    MultiSelect multiSelect() const { return m_multi; }
    void setMultiSelect(MultiSelect m) { m_multi = m; }

    void AddItem(const QString& text, int index = -1);
    void RemoveItem(int index);
    void Clear();
    int ListCount() const { return m_rows.count(); }
    QString List(int index) const { return m_rows.text(index); }
    qint32 ItemData(int index) const { return m_rows.at(index).itemData; }
    void setItemData(int index, qint32 data) { m_rows.at(index).itemData = data; }
    int NewIndex() const { return m_newIndex; }
    // Ticked (check-box list) or selected (the others).
    bool Selected(int index) const { return m_rows.at(index).selected; }
    // A change raises ItemCheck (check-box list) and sets the changed flag; a tick also raises
    // Click, an untick from code does not (the user's untick does, through userTick/userSelect).
    void setSelected(int index, bool selected);
    int SelCount() const;
    int ListIndex() const { return m_listIndex; }
    // Makes the row current (-1 for none; other values are failure 380) and raises Click.
    void setListIndex(int index);
    int TopIndex() const { return m_topIndex; }
    void setTopIndex(int index);
    bool DataChanged() const { return m_dataChanged; }
    void setDataChanged(bool changed) { m_dataChanged = changed; }

    Event<> Click;
    Event<> DblClick;
    Event<int /*item*/> ItemCheck;

    // A mouse click on the box of a row: the row becomes current and its tick is set as asked.
    void userTick(int row, bool checked);
    // A click on a row; in a multi-select list it selects or deselects the row.
    void userSelect(int row, bool selected = true);
    QJsonObject snapshot() const override;

private:
    void requireRow(int row, const char* act) const;

    ItemRows m_rows;
    Style m_style = Style::Standard;
    MultiSelect m_multi = MultiSelect::None;
    int m_listIndex = -1;
    int m_topIndex = 0;
    int m_newIndex = -1;
    bool m_dataChanged = false;
};

class ComboBox : public Control {
public:
    enum class Style { DropDownCombo = 0, DropDownList = 2 };
    using Control::Control;
    Kind kind() const override { return Kind::ComboBox; }

    Style style() const { return m_style; }
    void setStyle(Style s) { m_style = s; }

    void AddItem(const QString& text, int index = -1);
    void RemoveItem(int index);
    void Clear();
    int ListCount() const { return m_rows.count(); }
    QString List(int index) const { return m_rows.text(index); }
    qint32 ItemData(int index) const { return m_rows.at(index).itemData; }
    void setItemData(int index, qint32 data) { m_rows.at(index).itemData = data; }
    int NewIndex() const { return m_newIndex; }
    int ListIndex() const { return m_listIndex; }
    // Selects the row (-1 for none; other values are failure 380) and raises Click.
    void setListIndex(int index);
    const QString& Text() const { return m_text; }
    // Drop-down list: selects the row of exactly that text and raises Click; a text not in the
    // list is failure 383. Drop-down combo: takes any text and raises Change when it differs.
    void setText(const QString& text);

    Event<> Click;
    Event<> Change;

    void userSelect(int row);
    QJsonObject snapshot() const override;

protected:
    bool showsLocked() const override { return true; }

private:
    ItemRows m_rows;
    Style m_style = Style::DropDownList;
    int m_listIndex = -1;
    int m_newIndex = -1;
    QString m_text;
};

// The support library's combo, used only as a list of contacts in memory; never shown.
class ContactCombo : public Control {
public:
    using Control::Control;
    Kind kind() const override { return Kind::ContactCombo; }

    void Clear() { m_rows.clear(); changed(); }
    void AddItem(const QString& text, qint32 itemData);
    int ListCount() const { return m_rows.count(); }
    QString List(int index) const { return m_rows.text(index); }
    qint32 ItemData(int index) const { return m_rows.at(index).itemData; }
    QJsonObject snapshot() const override;

protected:
    bool focusable() const override { return false; }

private:
    ItemRows m_rows;
};

} // namespace steplets
