#include "Lists.h"
#include "Form.h"
#include "runtime/Failure.h"

namespace steplets {

namespace {
Failure invalidValue() { return Failure::invalidPropertyValue(); }

QJsonArray rowsJson(const ItemRows& rows, const char* flag) {
    QJsonArray items;
    for (const auto& r : rows.rows()) {
        QJsonObject o{{QStringLiteral("text"), r.text}, {QStringLiteral("itemData"), r.itemData}};
        if (flag) o[QLatin1String(flag)] = r.selected;
        items.append(o);
    }
    return items;
}
} // namespace

// --- ItemRows ---

int ItemRows::add(const QString& text, int index) {
    if (index < -1 || index > count()) throw Failure::invalidCall();
    if (index == -1) index = count();
    m_rows.insert(m_rows.begin() + index, Row{text, 0, false});
    return index;
}

void ItemRows::remove(int index) {
    if (index < 0 || index >= count()) throw Failure::invalidCall();
    m_rows.erase(m_rows.begin() + index);
}

QString ItemRows::text(int index) const {
    return index < 0 || index >= count() ? QString() : m_rows[static_cast<std::size_t>(index)].text;
}

ItemRows::Row& ItemRows::at(int index) {
    if (index < 0 || index >= count()) throw Failure::invalidPropertyIndex();
    return m_rows[static_cast<std::size_t>(index)];
}

int ItemRows::find(const QString& text) const {
    for (int i = 0; i < count(); ++i)
        if (m_rows[static_cast<std::size_t>(i)].text == text) return i;
    return -1;
}

// --- ListBox ---

void ListBox::AddItem(const QString& text, int index) {
    m_newIndex = m_rows.add(text, index);
    if (m_listIndex >= m_newIndex) ++m_listIndex;
    changed();
}

void ListBox::RemoveItem(int index) {
    m_rows.remove(index);
    if (m_listIndex == index) m_listIndex = -1;
    else if (m_listIndex > index) --m_listIndex;
    changed();
}

void ListBox::Clear() {
    m_rows.clear();
    m_listIndex = -1;
    m_topIndex = 0;
    m_newIndex = -1;
    changed();
}

void ListBox::setSelected(int index, bool selected) {
    auto& row = m_rows.at(index);
    if (row.selected == selected) return;
    if (m_style == Style::Standard && m_multi == MultiSelect::None) {
        // A plain list has one selection: the current row.
        if (selected) { setListIndex(index); return; }
        row.selected = false;
        m_listIndex = -1;
        m_dataChanged = true;
        changed();
        Click();
        return;
    }
    row.selected = selected;
    m_dataChanged = true;
    changed();
    if (m_style == Style::CheckBox) ItemCheck(index);
    // Click follows the current row: a tick from code moves it there, an untick leaves it, so
    // clearing ticks from code raises no Click. That is why the process button stays enabled
    // after the launch has cleared the ticks.
    if (selected) Click();
}

int ListBox::SelCount() const {
    int n = 0;
    for (const auto& r : m_rows.rows()) n += r.selected ? 1 : 0;
    return n;
}

void ListBox::setListIndex(int index) {
    if (index < -1 || index >= m_rows.count()) throw invalidValue();
    if (m_style == Style::Standard && m_multi == MultiSelect::None) {
        for (int i = 0; i < m_rows.count(); ++i) m_rows.at(i).selected = (i == index);
    }
    if (index != m_listIndex) m_dataChanged = true;
    m_listIndex = index;
    changed();
    Click();
}

void ListBox::setTopIndex(int index) {
    if (index < 0 || (index > 0 && index >= m_rows.count())) throw invalidValue();
    m_topIndex = index;
    changed();
}

void ListBox::requireRow(int row, const char* act) const {
    requireReachable(act);
    if (row < 0 || row >= m_rows.count())
        throw UserActionRefused(QStringLiteral("cannot %1 row %2 of %3: the list has %4 rows")
                                    .arg(QLatin1String(act)).arg(row).arg(key()).arg(m_rows.count()));
}

void ListBox::userTick(int row, bool checked) {
    requireRow(row, "tick");
    if (m_style != Style::CheckBox)
        throw UserActionRefused(QStringLiteral("cannot tick a row of %1: it has no check boxes").arg(key()));
    form().moveFocus(this);
    m_listIndex = row;
    if (m_rows.at(row).selected != checked) {
        setSelected(row, checked);
        if (!checked) Click();
    } else {
        m_dataChanged = true;
        Click();
    }
}

void ListBox::userSelect(int row, bool selected) {
    requireRow(row, "select");
    form().moveFocus(this);
    if (m_multi != MultiSelect::None) {
        m_listIndex = row;
        if (m_rows.at(row).selected != selected) {
            setSelected(row, selected);
            if (!selected) Click();
        } else {
            Click();
        }
        return;
    }
    if (!selected)
        throw UserActionRefused(QStringLiteral("cannot deselect a row of %1: it is not a multi-select list").arg(key()));
    setListIndex(row);
}

QJsonObject ListBox::snapshot() const {
    QJsonObject o = Control::snapshot();
    const char* flag = m_style == Style::CheckBox ? "checked" : m_multi != MultiSelect::None ? "selected" : nullptr;
    o[QStringLiteral("items")] = rowsJson(m_rows, flag);
    o[QStringLiteral("listIndex")] = m_listIndex;
    return o;
}

// --- ComboBox ---

void ComboBox::AddItem(const QString& text, int index) {
    m_newIndex = m_rows.add(text, index);
    if (m_listIndex >= m_newIndex) ++m_listIndex;
    changed();
}

void ComboBox::RemoveItem(int index) {
    m_rows.remove(index);
    if (m_listIndex == index) {
        m_listIndex = -1;
        if (m_style == Style::DropDownList) m_text.clear();
    } else if (m_listIndex > index) {
        --m_listIndex;
    }
    changed();
}

void ComboBox::Clear() {
    m_rows.clear();
    m_listIndex = -1;
    m_newIndex = -1;
    m_text.clear();
    changed();
}

void ComboBox::setListIndex(int index) {
    if (index < -1 || index >= m_rows.count()) throw invalidValue();
    m_listIndex = index;
    const QString text = index >= 0 ? m_rows.text(index) : (m_style == Style::DropDownList ? QString() : m_text);
    const bool textChanged = text != m_text;
    m_text = text;
    changed();
    if (textChanged && m_style == Style::DropDownCombo) Change();
    Click();
}

void ComboBox::setText(const QString& text) {
    if (m_style == Style::DropDownList) {
        const int row = m_rows.find(text);
        if (row < 0) throw Failure::textReadOnly();
        setListIndex(row);
        return;
    }
    m_listIndex = m_rows.find(text);
    if (text == m_text) return;
    m_text = text;
    changed();
    Change();
}

void ComboBox::userSelect(int row) {
    requireReachable("select");
    if (row < 0 || row >= m_rows.count())
        throw UserActionRefused(QStringLiteral("cannot select row %1 of %2: the list has %3 rows")
                                    .arg(row).arg(key()).arg(m_rows.count()));
    if (Locked()) throw UserActionRefused(QStringLiteral("cannot select in %1: it is locked").arg(key()));
    form().moveFocus(this);
    setListIndex(row);
}

QJsonObject ComboBox::snapshot() const {
    QJsonObject o = Control::snapshot();
    o[QStringLiteral("text")] = m_text;
    o[QStringLiteral("items")] = rowsJson(m_rows, nullptr);
    o[QStringLiteral("listIndex")] = m_listIndex;
    return o;
}

// --- ContactCombo ---

void ContactCombo::AddItem(const QString& text, qint32 itemData) {
    const int index = m_rows.add(text);
    m_rows.at(index).itemData = itemData;
    changed();
}

QJsonObject ContactCombo::snapshot() const {
    QJsonObject o = Control::snapshot();
    o[QStringLiteral("items")] = rowsJson(m_rows, nullptr);
    return o;
}

} // namespace steplets
