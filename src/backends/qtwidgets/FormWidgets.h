#pragma once
// Widgets made of two for the control kinds that Qt has no single widget for: a tab strip (a
// panel whose tabs run along its top, the pages lying on the panel) and a calendar that can
// show "no date".
#include <QCalendarWidget>
#include <QFrame>
#include <QLabel>
#include <QTabBar>

namespace steplets::qt {

class TabStripWidget : public QFrame {
public:
    explicit TabStripWidget(QWidget* parent);
    QTabBar* tabBar() const { return m_bar; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QTabBar* m_bar;
};

class CalendarBox : public QWidget {
public:
    explicit CalendarBox(QWidget* parent);
    QCalendarWidget* calendar() const { return m_calendar; }
    // Null shows the month of today with nothing chosen and says so.
    void showDate(const QDate& date);

private:
    QCalendarWidget* m_calendar;
    QLabel* m_noDate;
};

} // namespace steplets::qt
