// Where the widgets lie: each at its control's twips, then each label given the room its text
// needs in the desktop's font, which is wider than the one the windows were designed for, and
// the window sized to hold what it shows.
#include "FormView.h"
#include "controls/Controls.h"
#include <QLabel>
#include <QMenuBar>
#include <algorithm>
#include <limits>

namespace steplets::qt {

namespace {

// A designed window's size counts its borders and caption bar; the client area is the rest.
constexpr int kBorderTwips = 2 * 60, kCaptionTwips = 330;
// The room kept between a grown label and what lies beside or below it, and inside a container.
constexpr int kGapTwips = 60;
// The least room beside a label that moves to the left to show its text on its line.
constexpr int kSideGapTwips = 30;

} // namespace

void FormView::placeDesigned(Control& c, QWidget* w)
{
    // The form's own controls lie below the host's menu bar, if there is one.
    const int top = px(c.Top()) + (w->parentWidget() == this ? menuHeight() : 0);
    if (c.Width() > 0 || c.Height() > 0) w->setGeometry(px(c.Left()), top, px(c.Width()), px(c.Height()));
    else w->move(px(c.Left()), top);
}

int FormView::menuHeight() const { return m_menuBar ? m_menuBar->sizeHint().height() : 0; }

QMenuBar* FormView::menuBar()
{
    if (!m_menuBar) {
        m_menuBar = new QMenuBar(this);
        m_menuBar->setNativeMenuBar(false);
        m_menuBar->setObjectName(QStringLiteral("hostMenu"));
        if (m_form) m_dirty.unite(QSet<Control*>(m_form->controls().begin(), m_form->controls().end()));
        m_formDirty = true;
        scheduleFlush();
    }
    return m_menuBar;
}

void FormView::layoutControls()
{
    // From the design each time, so a label that grew for one text does not stay grown for the next.
    for (Control* c : m_form->controls())
        if (QWidget* w = widgetOf(*c)) placeDesigned(*c, w);
    for (Control* c : m_form->controls())   // containers before their contents
        if (c->kind() == Control::Kind::Label)
            if (auto* l = static_cast<QLabel*>(widgetOf(*c))) fitLabel(l);
    fitContents();
}

QList<QWidget*> FormView::besides(QWidget* w) const
{
    // The other controls of its container that are drawn, bar those it lies on (a tab strip, a
    // frame laid under it): they are its background, not its neighbours.
    QList<QWidget*> out;
    for (QWidget* o : w->parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (o != w && !o->isHidden() && m_controlOf.contains(o) && !o->geometry().contains(w->geometry().topLeft()))
            out << o;
    return out;
}

void FormView::fitLabel(QLabel* l)
{
    const QString text = l->text();
    if (l->isHidden() || text.isEmpty()) return;
    const QFontMetrics fm(l->font());
    const int gap = px(kGapTwips);
    QRect r = l->geometry();
    const QList<QWidget*> others = besides(l);
    // Measured as the label lays its text out, which may round up a pixel more than size() does.
    const QSize line = fm.boundingRect(QRect(0, 0, 100000, 100000), Qt::TextShowMnemonic, text).size();

    // On one line in the designed box, or on one line widened into the free room to its right;
    // either way its text ends clear of the next control on its line.
    int right = l->parentWidget()->width() - gap, next = std::numeric_limits<int>::max() / 2;
    for (QWidget* o : others)
        if (o->geometry().top() <= r.bottom() && o->geometry().bottom() >= r.top() && o->x() > r.left())
            next = std::min(next, o->x());
    right = std::min(right, next - gap);
    const bool clear = r.left() + line.width() + px(kSideGapTwips) <= next;
    if (line.height() <= r.height() && clear && line.width() <= std::max(r.width(), right - r.left())) {
        l->setWordWrap(false);
        if (line.width() > r.width()) l->resize(line.width(), r.height());
        return;
    }
    // Or on its line moved to the left, into room that nothing uses, up to the next control.
    if (line.height() <= r.height()) {
        const int side = px(kSideGapTwips);
        int leftmost = side, rightmost = l->parentWidget()->width() - side;
        for (QWidget* o : others) {
            if (o->geometry().top() > r.bottom() || o->geometry().bottom() < r.top()) continue;
            if (o->x() > r.left()) rightmost = std::min(rightmost, o->x() - side);
            else leftmost = std::max(leftmost, o->geometry().right() + 1 + side);
        }
        if (line.width() <= rightmost - leftmost) {
            l->setWordWrap(false);
            l->setGeometry(std::min(r.left(), rightmost - line.width()), r.top(), line.width(), r.height());
            return;
        }
    }

    // Wrapped in its designed width, as high as its lines need; what lies below that the text
    // would run into moves down, and a container too short for it grows.
    l->setWordWrap(true);
    const int need = fm.boundingRect(QRect(0, 0, r.width(), 100000), Qt::TextShowMnemonic | Qt::TextWordWrap, text).height();
    // The window itself has no bottom yet: it is sized to its controls afterwards.
    int below = l->parentWidget() == this ? std::numeric_limits<int>::max() / 2 : l->parentWidget()->height() - gap;
    bool byControl = false;
    for (QWidget* o : others)
        if (o->x() <= r.right() && o->geometry().right() >= r.left() && o->y() > r.top() && o->y() - gap < below)
            below = o->y() - gap, byControl = true;
    const int lacking = r.top() + need - below;
    if (lacking > 0) {
        if (byControl) pushDown(l->parentWidget(), below + gap, lacking);
        else growDown(l->parentWidget(), lacking);
        below += lacking;
    }
    r.setHeight(std::max(need, std::min(r.height(), below - r.top())));
    l->setGeometry(r);
}

void FormView::pushDown(QWidget* container, int from, int by)
{
    // Everything from that line down moves together, so rows of controls stay rows.
    int lowest = 0;
    for (QWidget* o : container->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!m_controlOf.contains(o) || o->y() < from) continue;
        o->move(o->x(), o->y() + by);
        if (!o->isHidden()) lowest = std::max(lowest, o->geometry().bottom() + 1);
    }
    if (container != this && lowest > container->height()) growDown(container, lowest - container->height());
}

void FormView::growDown(QWidget* container, int by)
{
    if (container == this) return;   // the window is sized once every control has its place
    const int oldBottom = container->geometry().bottom() + 1;
    container->resize(container->width(), container->height() + by);
    pushDown(container->parentWidget(), oldBottom, by);
}

void FormView::fitContents()
{
    // The client area is the designed one, grown where a visible control would be cut off: a
    // caption bar or border thicker than the design's, or a label grown for its text, must not
    // hide the window's buttons.
    int width = px(m_form->Width() - kBorderTwips), height = px(m_form->Height() - kBorderTwips - kCaptionTwips) + menuHeight();
    for (Control* c : m_form->controls()) {
        QWidget* w = widgetOf(*c);
        if (!w || c->Container() || !c->Visible() || c->Left() < 0 || c->Top() < 0) continue;
        width = std::max(width, w->geometry().right() + 1 + px(kGapTwips));
        height = std::max(height, w->geometry().bottom() + 1 + px(kGapTwips));
    }
    if (width > 0 && height > 0) setFixedSize(width, height);
    if (m_menuBar) m_menuBar->setGeometry(0, 0, this->width(), menuHeight());
}

} // namespace steplets::qt
