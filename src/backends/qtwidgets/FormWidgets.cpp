#include "FormWidgets.h"
#include <QKeyEvent>
#include <QListWidget>
#include <QLocale>
#include <QMouseEvent>
#include <QScreen>
#include <QStyleOptionComboBox>
#include <QStyleOptionViewItem>
#include <QStylePainter>
#include <QVBoxLayout>

namespace steplets::qt {

QRect checkIndicatorRect(const QListWidget* list, const QListWidgetItem* item)
{
    QStyleOptionViewItem opt;
    opt.initFrom(list->viewport());
    opt.rect = list->visualItemRect(item);
    opt.features |= QStyleOptionViewItem::HasCheckIndicator;
    return list->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &opt, list);
}

QWidget* keyboardWidget(QWidget* controlWidget)
{
    if (auto* strip = dynamic_cast<TabStripWidget*>(controlWidget)) return strip->tabBar();
    if (auto* cal = dynamic_cast<CalendarBox*>(controlWidget)) return cal->calendar();
    return controlWidget;
}

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
    : QWidget(parent), m_calendar(new QCalendarWidget(this)), m_noDate(new QLabel(QStringLiteral("(no date)"), this)),
      m_popup(new QFrame(this, Qt::Popup))
{
    m_calendar->setObjectName(QStringLiteral("calendar"));
    m_calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    m_noDate->setAlignment(Qt::AlignCenter);
    m_popup->setFrameShape(QFrame::StyledPanel);
    auto* popupLayout = new QVBoxLayout(m_popup);
    popupLayout->setContentsMargins(1, 1, 1, 1);
    // A day picked in the drop-down closes it; the binding hears the same click.
    QObject::connect(m_calendar, &QCalendarWidget::clicked, m_popup, [this] { if (m_dropDown) m_popup->hide(); });
    QObject::connect(m_calendar, &QCalendarWidget::activated, m_popup, [this] { if (m_dropDown) m_popup->hide(); });
    m_popup->installEventFilter(this);
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_calendar);
}

CalendarBox::~CalendarBox() = default;

void CalendarBox::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void CalendarBox::arrange()
{
    // Lower than the month grid needs: a field with a drop-down, as a date field is drawn.
    const bool drop = height() < m_calendar->minimumSizeHint().height();
    if (drop != m_dropDown) {
        m_dropDown = drop;
        if (drop) {
            m_popup->layout()->addWidget(m_calendar);
            setFocusProxy(nullptr);
        } else {
            m_popup->hide();
            m_calendar->setParent(this);
            setFocusProxy(m_calendar);
        }
        m_calendar->show();
    }
    m_noDate->setVisible(!m_dropDown && !m_date.isValid());
    if (!m_dropDown) {
        const int noDate = m_noDate->isVisible() ? m_noDate->sizeHint().height() : 0;
        m_calendar->setGeometry(0, 0, width(), height() - noDate);
        m_noDate->setGeometry(0, height() - noDate, width(), noDate);
    }
    update();
}

QString CalendarBox::fieldText() const
{
    return m_date.isValid() ? QLocale().toString(m_date, QLocale::ShortFormat) : QStringLiteral("(no date)");
}

void CalendarBox::paintEvent(QPaintEvent* event)
{
    if (!m_dropDown) return QWidget::paintEvent(event);
    // Drawn as the style draws a drop-down list: a frame, the text and the arrow.
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    option.initFrom(this);
    option.editable = false;
    option.currentText = fieldText();
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void CalendarBox::mousePressEvent(QMouseEvent* event)
{
    if (m_dropDown && event->button() == Qt::LeftButton && isEnabled()) {
        setFocus(Qt::MouseFocusReason);
        showPopup();
        return;
    }
    QWidget::mousePressEvent(event);
}

void CalendarBox::keyPressEvent(QKeyEvent* event)
{
    const bool opens = event->key() == Qt::Key_F4 || event->key() == Qt::Key_Space ||
                       (event->key() == Qt::Key_Down && event->modifiers() & Qt::AltModifier);
    if (m_dropDown && opens) {
        showPopup();
        return;
    }
    QWidget::keyPressEvent(event);
}

bool CalendarBox::eventFilter(QObject* watched, QEvent* event)
{
    // However the drop-down closes, the field has the focus again in its own window: the popup
    // took the window's activation, and without it the window hears of no later focus change.
    if (watched == m_popup && event->type() == QEvent::Hide && m_dropDown) {
        window()->activateWindow();
        setFocus(Qt::PopupFocusReason);
    }
    return QWidget::eventFilter(watched, event);
}

void CalendarBox::showPopup()
{
    if (!m_dropDown) return;
    m_popup->adjustSize();
    // Under the field, or above it when the screen ends below; never off the screen's sides.
    QRect r(mapToGlobal(QPoint(0, height())), m_popup->sizeHint());
    if (const QScreen* screen = this->screen()) {
        const QRect avail = screen->availableGeometry();
        if (r.bottom() > avail.bottom()) r.moveBottom(mapToGlobal(QPoint(0, 0)).y() - 1);
        r.moveLeft(qBound(avail.left(), r.left(), qMax(avail.left(), avail.right() - r.width())));
    }
    m_popup->setGeometry(r);
    m_popup->show();
    m_calendar->setFocus(Qt::PopupFocusReason);
}

void CalendarBox::showDate(const QDate& date)
{
    m_date = date;
    m_calendar->setSelectedDate(date.isValid() ? date : QDate::currentDate());
    arrange();
}

} // namespace steplets::qt
