#pragma once
// Widgets made of two for the control kinds that Qt has no single widget for: a tab strip (a
// panel whose tabs run along its top, the pages lying on the panel) and a calendar that can
// show "no date" and fits the room its design gives it.
#include <QCalendarWidget>
#include <QFrame>
#include <QLabel>
#include <QTabBar>

class QListWidget;
class QListWidgetItem;

namespace steplets::qt {

// Where the check box of a row of a check-box list is drawn, in the list's viewport: a click
// there ticks the row and nothing else.
QRect checkIndicatorRect(const QListWidget* list, const QListWidgetItem* item);

// The widget that takes the keyboard for a control's widget: a tab strip's bar, a calendar's
// month grid, else the widget itself.
QWidget* keyboardWidget(QWidget* controlWidget);

class TabStripWidget : public QFrame {
public:
    explicit TabStripWidget(QWidget* parent);
    QTabBar* tabBar() const { return m_bar; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QTabBar* m_bar;
};

// A calendar designed as high as a month grid shows the grid itself, with "(no date)" under it
// while there is no date. One designed lower (a line, as a date field) is a field that shows the
// date, or "(no date)", and drops the month grid down under itself when clicked (or on F4,
// Alt+Down, Space); a click on a day, or Enter on it, picks it and closes the drop-down.
class CalendarBox : public QWidget {
public:
    explicit CalendarBox(QWidget* parent);
    ~CalendarBox() override;
    // The month grid, wherever it lies: in the box, or in the drop-down.
    QCalendarWidget* calendar() const { return m_calendar; }
    bool isDropDown() const { return m_dropDown; }
    // Drops the month grid down under the field (a drop-down box only).
    void showPopup();
    // Null shows the month of today with nothing chosen and says so.
    void showDate(const QDate& date);
    // What the field shows: the date, or "(no date)".
    QString fieldText() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void arrange();

    QCalendarWidget* m_calendar;
    QLabel* m_noDate;
    QFrame* m_popup;
    QDate m_date;
    bool m_dropDown = false;
};

} // namespace steplets::qt
