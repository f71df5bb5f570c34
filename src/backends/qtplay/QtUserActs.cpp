#include "QtUserActs.h"
#include "ContactPickerDialog.h"
#include "FormView.h"
#include "FormWidgets.h"
#include "KeyCodes.h"
#include "controls/Controls.h"
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStyleOptionButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>

namespace steplets::qtplay {

using scripted::Step;

namespace {

[[noreturn]] void refuse(const QString& why) { throw UserActionRefused(why); }

QString member(const Step& step, const char* name) { return step.json.value(QLatin1String(name)).toString(); }

// A person can only act on what is on the screen: shown, enabled and inside its window.
void requireReachable(QWidget* w, const QString& what)
{
    if (!w->isVisible()) refuse(QStringLiteral("%1 is not on the screen").arg(what));
    if (!w->isEnabled()) refuse(QStringLiteral("%1 is disabled").arg(what));
    const QRect inWindow(w->mapTo(w->window(), QPoint(0, 0)), w->size());
    if (!inWindow.intersects(w->window()->rect())) refuse(QStringLiteral("%1 lies outside its window").arg(what));
}

// Where a click toggles a check box or radio button: on its indicator.
QPoint indicatorOf(QAbstractButton* b)
{
    QStyleOptionButton opt;
    opt.initFrom(b);
    const auto element = qobject_cast<QRadioButton*>(b) ? QStyle::SE_RadioButtonIndicator : QStyle::SE_CheckBoxIndicator;
    const QRect r = b->style()->subElementRect(element, &opt, b);
    return r.isValid() ? r.center() : b->rect().center();
}

// A point a person can click: on the screen, not cut off by the widget's parents.
void requireVisiblePoint(QWidget* w, QPoint at, const QString& what)
{
    if (!w->visibleRegion().contains(at))
        refuse(QStringLiteral("%1 cannot be clicked there: that part of it is cut off").arg(what));
}

void clickAt(QWidget* w, QPoint at, const QString& what, Qt::KeyboardModifiers mods = {})
{
    requireVisiblePoint(w, at, what);
    QTest::mouseClick(w, Qt::LeftButton, mods, at);
}

// A double click as the mouse makes it: press, release, the second press, release.
void doubleClickAt(QWidget* w, QPoint at, const QString& what)
{
    requireVisiblePoint(w, at, what);
    QTest::mouseClick(w, Qt::LeftButton, {}, at);
    QTest::mouseDClick(w, Qt::LeftButton, {}, at);
    QTest::mouseRelease(w, Qt::LeftButton, {}, at);
}

void clickButton(QAbstractButton* b, const QString& what)
{
    requireReachable(b, what);
    const bool box = qobject_cast<QCheckBox*>(b) || qobject_cast<QRadioButton*>(b);
    clickAt(b, box ? indicatorOf(b) : b->rect().center(), what);
}

// Types `text` over whatever the field holds, as a person selecting it all and typing.
void typeOver(QWidget* field, const QString& text)
{
    field->setFocus(Qt::TabFocusReason);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty()) QTest::keyClick(field, Qt::Key_Backspace);
    else QTest::keyClicks(field, text);
}

// Opens the combo's list and clicks the row.
void chooseRow(QComboBox* combo, int row, const QString& what)
{
    requireReachable(combo, what);
    if (row < 0 || row >= combo->count()) refuse(QStringLiteral("%1 has no row %2").arg(what).arg(row));
    combo->showPopup();
    QAbstractItemView* view = combo->view();
    const QModelIndex index = view->model()->index(row, combo->modelColumn());
    view->scrollTo(index);
    clickAt(view->viewport(), view->visualRect(index).center(), what);
    if (combo->currentIndex() != row) refuse(QStringLiteral("%1 did not take the click on row %2").arg(what).arg(row));
}

// The row a step names by its text ("item") or position ("row") among `texts`.
int rowOf(const QStringList& texts, const Step& step, const QString& what)
{
    if (step.json.contains(QStringLiteral("row"))) return step.json.value(QStringLiteral("row")).toInt();
    const int row = texts.indexOf(member(step, "item"));
    if (row < 0) refuse(QStringLiteral("%1 has no row \"%2\"").arg(what, member(step, "item")));
    return row;
}

QStringList textsOf(QListWidget* l)
{
    QStringList t;
    for (int i = 0; i < l->count(); ++i) t << l->item(i)->text();
    return t;
}

QStringList textsOf(QComboBox* c)
{
    QStringList t;
    for (int i = 0; i < c->count(); ++i) t << c->itemText(i);
    return t;
}

QListWidgetItem* listRow(QListWidget* l, int row, const QString& what)
{
    requireReachable(l, what);
    if (row < 0 || row >= l->count()) refuse(QStringLiteral("%1 has no row %2").arg(what).arg(row));
    QListWidgetItem* item = l->item(row);
    l->scrollToItem(item);
    return item;
}

void tick(QListWidget* l, const Step& step, const QString& what)
{
    QListWidgetItem* item = listRow(l, rowOf(textsOf(l), step, what), what);
    if (!(item->flags() & Qt::ItemIsUserCheckable)) refuse(QStringLiteral("%1 has no check boxes").arg(what));
    const bool wanted = step.json.value(QStringLiteral("checked")).toBool();
    const QRect box = qt::checkIndicatorRect(l, item);
    // A box already as wanted is left alone; the row is clicked beside it, as a person would.
    const bool toggle = (item->checkState() == Qt::Checked) != wanted;
    const QPoint at = toggle ? box.center() : QPoint(box.right() + 8, l->visualItemRect(item).center().y());
    clickAt(l->viewport(), at, what);
    if ((item->checkState() == Qt::Checked) != wanted)
        refuse(QStringLiteral("%1: the click on the box of row %2 did not tick it").arg(what).arg(l->row(item)));
}

void select(QWidget* w, const Step& step, const QString& what)
{
    const bool selected = step.json.value(QStringLiteral("selected")).toBool(true);
    if (auto* combo = qobject_cast<QComboBox*>(w)) {
        if (!selected) refuse(QStringLiteral("cannot deselect a row of the combo box %1").arg(what));
        return chooseRow(combo, rowOf(textsOf(combo), step, what), what);
    }
    auto* l = qobject_cast<QListWidget*>(w);
    if (!l) refuse(QStringLiteral("%1 is not a list or combo box").arg(what));
    QListWidgetItem* item = listRow(l, rowOf(textsOf(l), step, what), what);
    const bool multi = l->selectionMode() == QAbstractItemView::MultiSelection
                    || l->selectionMode() == QAbstractItemView::ExtendedSelection;
    if (!multi && !selected) refuse(QStringLiteral("cannot deselect a row of %1: it is not a multi-select list").arg(what));
    if (multi && item->isSelected() == selected) return;
    const Qt::KeyboardModifiers mods =
        l->selectionMode() == QAbstractItemView::ExtendedSelection ? Qt::ControlModifier : Qt::NoModifier;
    // Beside any check box: a click on the text selects the row and leaves the box as it is.
    QPoint at = l->visualItemRect(item).center();
    if (item->flags() & Qt::ItemIsUserCheckable) at.setX(std::max(at.x(), 40));
    clickAt(l->viewport(), at, what, mods);
}

void typeInto(QWidget* w, const Step& step, const QString& what)
{
    auto* e = qobject_cast<QLineEdit*>(w);
    if (!e) refuse(QStringLiteral("%1 is not a text box").arg(what));
    requireReachable(e, what);
    if (e->isReadOnly()) refuse(QStringLiteral("cannot type into %1: it is locked").arg(what));
    typeOver(e, member(step, "text"));
    // Leaving the box: the Tab key moves on along the window's tab order.
    if (e->hasFocus()) QTest::keyClick(e, Qt::Key_Tab);
}

void focus(QWidget* w, const QString& what)
{
    QWidget* target = qt::keyboardWidget(w);
    requireReachable(target, what);
    if (target->focusPolicy() == Qt::NoFocus) refuse(QStringLiteral("cannot focus %1: it takes no focus").arg(what));
    target->setFocus(Qt::TabFocusReason);
}

void key(QWidget* w, const Step& step, const QString& what)
{
    focus(w, what);
    const Qt::Key k = qt::qtKeyOf(step.json.value(QStringLiteral("keyCode")).toInt());
    if (k == Qt::Key_unknown) refuse(QStringLiteral("no key has the code %1").arg(step.json.value(QStringLiteral("keyCode")).toInt()));
    Qt::KeyboardModifiers mods;
    if (step.json.value(QStringLiteral("shift")).toBool()) mods |= Qt::ShiftModifier;
    if (step.json.value(QStringLiteral("ctrl")).toBool()) mods |= Qt::ControlModifier;
    if (step.json.value(QStringLiteral("alt")).toBool()) mods |= Qt::AltModifier;
    QTest::keyClick(qt::keyboardWidget(w), k, mods);
}

void clickTab(QWidget* w, const Step& step, const QString& what)
{
    auto* strip = dynamic_cast<qt::TabStripWidget*>(w);
    if (!strip) refuse(QStringLiteral("%1 is not a tab strip").arg(what));
    QTabBar* bar = strip->tabBar();
    requireReachable(bar, what);
    const int i = step.json.value(QStringLiteral("index")).toInt() - 1;
    if (i < 0 || i >= bar->count()) refuse(QStringLiteral("%1 has no tab %2").arg(what).arg(i + 1));
    clickAt(bar, bar->tabRect(i).center(), what);
}

// The day's cell on the calendar's page: the month runs from the first "1" to the next one.
QModelIndex dayCell(QTableView* view, int day)
{
    const QAbstractItemModel* m = view->model();
    int counted = 0;
    bool inMonth = false;
    for (int r = 0; r < m->rowCount(); ++r)
        for (int c = 0; c < m->columnCount(); ++c) {
            bool number = false;
            const int n = m->index(r, c).data().toString().toInt(&number);
            if (!number || view->isRowHidden(r) || view->isColumnHidden(c)) continue;
            if (n == 1) {
                if (inMonth) return {};
                inMonth = true;
            }
            if (inMonth && ++counted == day) return m->index(r, c);
        }
    return {};
}

void pickDate(QWidget* w, const Step& step, const QString& what)
{
    auto* box = dynamic_cast<qt::CalendarBox*>(w);
    if (!box) refuse(QStringLiteral("%1 is not a calendar").arg(what));
    // A calendar drawn as a date field drops its month grid down when clicked.
    if (box->isDropDown()) {
        requireReachable(box, what);
        clickAt(box, box->rect().center(), what);
    }
    QCalendarWidget* cal = box->calendar();
    requireReachable(cal, what);
    const QDate date = QDate::fromString(member(step, "value"), Qt::ISODate);
    if (!date.isValid() || date < cal->minimumDate() || date > cal->maximumDate())
        refuse(QStringLiteral("%1 cannot show the date %2").arg(what, member(step, "value")));
    cal->setCurrentPage(date.year(), date.month());
    auto* view = cal->findChild<QTableView*>(QStringLiteral("qt_calendar_calendarview"));
    const QModelIndex cell = view ? dayCell(view, date.day()) : QModelIndex();
    if (!cell.isValid()) refuse(QStringLiteral("%1 shows no cell for %2").arg(what, member(step, "value")));
    clickAt(view->viewport(), view->visualRect(cell).center(), what);
}

void doubleClickRow(QWidget* w, const Step& step, const QString& what)
{
    auto* t = qobject_cast<QTableWidget*>(w);
    if (!t) refuse(QStringLiteral("%1 is not a grid").arg(what));
    requireReachable(t, what);
    const int row = step.json.value(QStringLiteral("row")).toInt();
    if (row < 0 || row >= t->rowCount())
        refuse(QStringLiteral("cannot double-click row %1 of %2: it has %3 rows").arg(row).arg(what).arg(t->rowCount()));
    const QModelIndex cell = t->model()->index(row, 0);
    t->scrollTo(cell);
    doubleClickAt(t->viewport(), t->visualRect(cell).center(), what);
}

void clickTool(QWidget* w, const Step& step, const QString& what)
{
    auto* bar = qobject_cast<QToolBar*>(w);
    if (!bar) refuse(QStringLiteral("%1 is not a tool bar").arg(what));
    const QString name = member(step, "tool");
    for (QAction* a : bar->actions()) {
        if (a->objectName() != name) continue;
        if (!a->isVisible() || !a->isEnabled()) refuse(QStringLiteral("the tool %1 of %2 is hidden or disabled").arg(name, what));
        QWidget* button = bar->widgetForAction(a);
        requireReachable(button, what + QLatin1Char('.') + name);
        return clickAt(button, button->rect().center(), what + QLatin1Char('.') + name);
    }
    refuse(QStringLiteral("%1 has no tool %2").arg(what, name));
}

// What a control's widget shows against what its model says, for the states a person reads off
// the screen; empty when they agree.
QString shownDiffers(qt::FormView& view, const Control& c)
{
    QWidget* w = view.widgetOf(c);
    if (!w) return {};
    auto differs = [&](const char* what, const QString& shown, const QString& model) {
        return QStringLiteral("%1 shows %2 \"%3\" but its model says \"%4\"").arg(c.key(), QLatin1String(what), shown, model);
    };
    const bool visible = c.effectivelyVisible();
    if (w->isVisible() != visible) return differs("visible", QString::number(w->isVisible()), QString::number(visible));
    if (!visible) return {};
    if (w->isEnabled() != c.effectivelyEnabled())
        return differs("enabled", QString::number(w->isEnabled()), QString::number(c.effectivelyEnabled()));
    if (auto* e = qobject_cast<QLineEdit*>(w); e && e->text() != static_cast<const TextBox&>(c).Text())
        return differs("the text", e->text(), static_cast<const TextBox&>(c).Text());
    if (auto* b = qobject_cast<QCheckBox*>(w)) {
        const int v = static_cast<const CheckBox&>(c).Value();
        const int shown = b->checkState() == Qt::Checked ? 1 : b->checkState() == Qt::PartiallyChecked ? 2 : 0;
        if (shown != v) return differs("the value", QString::number(shown), QString::number(v));
    }
    if (auto* l = qobject_cast<QListWidget*>(w)) {
        const auto& list = static_cast<const ListBox&>(c);
        if (l->count() != list.ListCount()) return differs("rows", QString::number(l->count()), QString::number(list.ListCount()));
        for (int i = 0; i < l->count(); ++i)
            if (l->item(i)->text() != list.List(i)) return differs("a row", l->item(i)->text(), list.List(i));
    }
    return {};
}

} // namespace

std::optional<QJsonObject> actOnForm(qt::FormView& view, Form& form, const Step& step)
{
    const QString& a = step.action;
    if (a == QLatin1String("snapshot")) {
        // The snapshot reads the models; the screen must say the same.
        for (const Control* c : form.controls())
            if (const QString d = shownDiffers(view, *c); !d.isEmpty()) refuse(QStringLiteral("on the screen, ") + d);
        return form.snapshot();
    }
    if (a == QLatin1String("close")) {
        // The close box asks the window, which may refuse.
        view.close();
        return std::nullopt;
    }
    const QString name = step.json.value(a).toString();
    Control* c = form.control(name);
    if (!c) refuse(QStringLiteral("%1 has no control %2").arg(form.name(), name));
    QWidget* w = view.widgetOf(*c);
    if (!w) refuse(QStringLiteral("%1 has no widget on the screen").arg(name));
    if (a == QLatin1String("click")) {
        if (auto* b = qobject_cast<QAbstractButton*>(w)) clickButton(b, name);
        else {
            requireReachable(w, name);
            clickAt(w, w->rect().center(), name);
        }
    } else if (a == QLatin1String("focus")) {
        focus(w, name);
    } else if (a == QLatin1String("key")) {
        key(w, step, name);
    } else if (a == QLatin1String("tick")) {
        auto* l = qobject_cast<QListWidget*>(w);
        if (!l) refuse(QStringLiteral("%1 is not a list box").arg(name));
        tick(l, step, name);
    } else if (a == QLatin1String("select")) {
        select(w, step, name);
    } else if (a == QLatin1String("type")) {
        typeInto(w, step, name);
    } else if (a == QLatin1String("tab")) {
        clickTab(w, step, name);
    } else if (a == QLatin1String("date")) {
        pickDate(w, step, name);
    } else if (a == QLatin1String("dblclick")) {
        doubleClickRow(w, step, name);
    } else if (a == QLatin1String("toolclick")) {
        clickTool(w, step, name);
    }
    return std::nullopt;
}

void answerMessageBox(QMessageBox& box, const MessageBoxRequest& request, const Step& step)
{
    const QString answer = member(step, "msgbox");
    if (step.json.contains(QStringLiteral("title")) && member(step, "title") != request.title)
        refuse(QStringLiteral("the message box shown has the title \"%1\"").arg(request.title));
    if (step.json.contains(QStringLiteral("text")) && member(step, "text") != request.text)
        refuse(QStringLiteral("the message box shown has the text \"%1\"").arg(request.text));
    // What is on the screen must say what was asked.
    if (box.windowTitle() != request.title || box.text() != QString(request.text).replace(QLatin1String("\r\n"), QLatin1String("\n")))
        refuse(QStringLiteral("the message box shows \"%1\" titled \"%2\", not what was asked").arg(box.text(), box.windowTitle()));
    static const QHash<QString, QMessageBox::StandardButton> kButtons{
        {QStringLiteral("OK"), QMessageBox::Ok}, {QStringLiteral("Cancel"), QMessageBox::Cancel},
        {QStringLiteral("Yes"), QMessageBox::Yes}, {QStringLiteral("No"), QMessageBox::No}};
    QAbstractButton* button = kButtons.contains(answer) ? box.button(kButtons.value(answer)) : nullptr;
    if (!button)
        refuse(QStringLiteral("the message box \"%1\" has the buttons %2").arg(request.title, MessageBoxRequest::buttonsName(request.buttons)));
    clickButton(button, answer);
}

namespace {

// A field of an item window by the item's property name.
QWidget* fieldOf(QDialog& window, const QString& property)
{
    for (QWidget* w : window.findChildren<QWidget*>())
        if (w->objectName().compare(property, Qt::CaseInsensitive) == 0) return w;
    return nullptr;
}

// Brings the page a field lies on to the front, as a person clicks its tab.
void showPageOf(QWidget* field)
{
    for (QWidget* w = field; w; w = w->parentWidget()) {
        auto* tabs = qobject_cast<QTabWidget*>(w->parentWidget() ? w->parentWidget()->parentWidget() : nullptr);
        if (!tabs) continue;
        const int i = tabs->indexOf(w);
        if (i >= 0 && tabs->currentIndex() != i) {
            QTabBar* bar = tabs->tabBar();
            QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(i).center());
        }
    }
}

void writeField(QDialog& window, const QString& property, const QJsonValue& value)
{
    QWidget* w = fieldOf(window, property);
    if (!w) refuse(QStringLiteral("the item window has no field for %1").arg(property));
    showPageOf(w);
    const QString what = QStringLiteral("the field %1").arg(property);
    if (auto* date = qobject_cast<QDateTimeEdit*>(w)) {
        // A date that may be none has a "None" box beside it.
        const QDateTime wanted = QDateTime::fromString(value.toString(), Qt::ISODate);
        auto* none = window.findChild<QCheckBox*>(w->objectName() + QStringLiteral("None"));
        const bool noDate = wanted.date().year() >= 4501;
        if (none && none->isChecked() != noDate) clickButton(none, what);
        if (noDate) return;
        requireReachable(date, what);
        // Typing a date depends on the locale's order of its parts; the widget's own value is set.
        date->setDateTime(wanted);
        return;
    }
    requireReachable(w, what);
    if (auto* e = qobject_cast<QLineEdit*>(w)) {
        if (e->isReadOnly()) refuse(QStringLiteral("%1 is read-only").arg(what));
        return typeOver(e, value.toVariant().toString());
    }
    if (auto* t = qobject_cast<QPlainTextEdit*>(w)) {
        if (t->isReadOnly()) refuse(QStringLiteral("%1 is read-only").arg(what));
        return typeOver(t, value.toString());
    }
    if (auto* s = qobject_cast<QAbstractSpinBox*>(w)) return typeOver(s, value.toVariant().toString());
    if (auto* b = qobject_cast<QCheckBox*>(w)) {
        if (b->isChecked() != value.toBool()) clickButton(b, what);
        return;
    }
    if (auto* combo = qobject_cast<QComboBox*>(w)) {
        const int row = value.isDouble() ? value.toInt() : combo->findText(value.toString());
        return chooseRow(combo, row, what);
    }
    refuse(QStringLiteral("%1 cannot be written").arg(what));
}

void writePattern(QDialog& window, const QJsonObject& pattern)
{
    for (const char* name : {"IsRecurring", "recurring"})
        if (auto* b = qobject_cast<QCheckBox*>(fieldOf(window, QLatin1String(name)))) {
            showPageOf(b);
            if (!b->isChecked()) clickButton(b, QStringLiteral("the recurrence box"));
            break;
        }
    for (auto it = pattern.begin(); it != pattern.end(); ++it) {
        const QString& p = it.key();
        if (p == QLatin1String("DayOfWeekMask")) {
            for (int day = 0; day < 7; ++day) {
                auto* b = qobject_cast<QCheckBox*>(fieldOf(window, QStringLiteral("dayOfWeek%1").arg(day)));
                if (!b) refuse(QStringLiteral("the item window has no field for %1").arg(p));
                if (b->isChecked() != bool(it.value().toInt() & (1 << day))) clickButton(b, p);
            }
            continue;
        }
        // The end of a pattern is chosen before its count or date.
        const char* end = p == QLatin1String("Occurrences") ? "endAfter"
                        : p == QLatin1String("PatternEndDate") ? "endBy"
                        : p == QLatin1String("NoEndDate") ? "endNever" : nullptr;
        if (end) {
            if (auto* b = qobject_cast<QAbstractButton*>(fieldOf(window, QLatin1String(end)))) clickButton(b, p);
            if (p == QLatin1String("NoEndDate")) continue;
        }
        writeField(window, p == QLatin1String("PatternEndDate") ? QStringLiteral("endDate") : p, it.value());
    }
}

QAbstractButton* windowButton(QDialog& window, const QString& name)
{
    auto* b = window.findChild<QAbstractButton*>(name);
    if (!b) refuse(QStringLiteral("the item window has no button %1").arg(name));
    return b;
}

} // namespace

void actInItemWindow(QDialog& window, const Step& step)
{
    const QJsonObject acts = step.json.value(QStringLiteral("item")).toObject();
    const QJsonObject set = acts.value(QStringLiteral("set")).toObject();
    for (auto it = set.begin(); it != set.end(); ++it) writeField(window, it.key(), it.value());
    const QJsonObject pattern = acts.value(QStringLiteral("recurrence")).toObject();
    if (!pattern.isEmpty()) writePattern(window, pattern);
    const QString close = acts.value(QStringLiteral("close")).toString();
    if (close == QLatin1String("save")) {
        clickButton(windowButton(window, QStringLiteral("saveAndClose")), QStringLiteral("Save and Close"));
    } else if (close == QLatin1String("send")) {
        clickButton(windowButton(window, QStringLiteral("send")), QStringLiteral("Send"));
    } else if (close == QLatin1String("discard")) {
        // A changed form asks whether to save: the answer is No.
        QTimer::singleShot(0, &window, [&window] {
            for (QMessageBox* box : window.findChildren<QMessageBox*>())
                if (box->isVisible())
                    if (QAbstractButton* no = box->button(QMessageBox::No)) QTest::mouseClick(no, Qt::LeftButton);
        });
        window.close();
    }
}

void answerPicker(qt::ContactPickerDialog& picker, const ContactPickerRequest& request, const Step& step)
{
    const QJsonValue answer = step.json.value(QStringLiteral("picker"));
    if (!answer.isObject()) {
        clickButton(picker.findChild<QAbstractButton*>(QStringLiteral("cancel")), QStringLiteral("Cancel"));
        return;
    }
    const QJsonObject o = answer.toObject();
    const qint32 id = o.value(QStringLiteral("ContactID")).toInt();
    for (int i = 0; i < request.rows.size(); ++i) {
        if (request.rows[i].contactID != id) continue;
        QTreeWidget* list = picker.list();
        QTreeWidgetItem* item = list->topLevelItem(i);
        if (!item || item->isHidden()) refuse(QStringLiteral("the picker does not show the contact %1").arg(id));
        list->scrollToItem(item);
        doubleClickAt(list->viewport(), list->visualItemRect(item).center(), QStringLiteral("the picker's list"));
        return;
    }
    refuse(QStringLiteral("the picker offers no contact %1").arg(id));
}

} // namespace steplets::qtplay
