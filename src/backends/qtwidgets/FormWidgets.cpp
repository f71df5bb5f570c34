#include "FormWidgets.h"
#include <QVBoxLayout>

namespace steplets::qt {

TabStripWidget::TabStripWidget(QWidget* parent) : QFrame(parent), m_bar(new QTabBar(this))
{
    setFrameShape(QFrame::StyledPanel);
    m_bar->setDrawBase(false);
    m_bar->setExpanding(false);
    m_bar->setObjectName(QStringLiteral("tabs"));
    setFocusProxy(m_bar);
}

void TabStripWidget::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    m_bar->setGeometry(0, 0, width(), m_bar->sizeHint().height());
    m_bar->lower();   // the pages' own widgets lie on the panel below the tabs
}

CalendarBox::CalendarBox(QWidget* parent)
    : QWidget(parent), m_calendar(new QCalendarWidget(this)), m_noDate(new QLabel(QStringLiteral("(no date)"), this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_calendar, 1);
    layout->addWidget(m_noDate);
    m_calendar->setObjectName(QStringLiteral("calendar"));
    m_calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    m_noDate->setAlignment(Qt::AlignCenter);
    setFocusProxy(m_calendar);
}

void CalendarBox::showDate(const QDate& date)
{
    m_noDate->setVisible(!date.isValid());
    if (date.isValid()) {
        m_calendar->setSelectedDate(date);
    } else {
        m_calendar->setSelectedDate(QDate::currentDate());
    }
}

} // namespace steplets::qt
