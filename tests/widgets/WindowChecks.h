#pragma once
// What every window must hold on the screen, checked on its widgets: a title, nothing cut off
// (a control by its container or the window, a text by its control), every accelerator leading
// to one control, and the Tab key going round what a person can see. The generic binding's
// windows are checked also for the size pages moved out of sight must not give them.
#include "FormView.h"
#include "QtUiHost.h"
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <QTest>
#include <QTextDocument>
#include <QToolBar>
#include <gtest/gtest.h>

namespace steplets::test {

inline std::string nameOf(const QWidget* w)
{
    const QString name = w->objectName().isEmpty() ? QString::fromLatin1(w->metaObject()->className()) : w->objectName();
    return name.toStdString();
}

// Widgets that Qt's composite widgets make and lay out themselves.
inline bool insideComposite(const QWidget* w, const QWidget* window)
{
    for (const QWidget* p = w->parentWidget(); p && p != window; p = p->parentWidget())
        if (qobject_cast<const QCalendarWidget*>(p) || qobject_cast<const QComboBox*>(p) || qobject_cast<const QAbstractSpinBox*>(p) ||
            qobject_cast<const QTabBar*>(p) || qobject_cast<const QToolBar*>(p) || qobject_cast<const QAbstractItemView*>(p))
            return true;
    return false;
}

// Shown, enabled and at least partly inside its window: what a person can reach.
inline bool onScreen(const QWidget* w, const QWidget* window)
{
    return w->isVisibleTo(window) && w->isEnabled() && !w->visibleRegion().isEmpty();
}

inline void expectTextFits(const QWidget* w, const QString& text, const QRect& room, int flags)
{
    const QRect need = QFontMetrics(w->font()).boundingRect(QRect(0, 0, room.width(), 100000), flags | Qt::TextShowMnemonic, text);
    EXPECT_LE(need.width(), room.width()) << nameOf(w) << " cuts off \"" << text.toStdString() << "\"";
    EXPECT_LE(need.height(), room.height()) << nameOf(w) << " cuts off \"" << text.toStdString() << "\"";
}

inline void expectNothingClipped(QWidget* window)
{
    for (QWidget* w : window->findChildren<QWidget*>()) {
        if (!w->isVisibleTo(window) || insideComposite(w, window) || w->visibleRegion().isEmpty()) continue;
        // Placed by position, not by a layout: the whole of it is in sight, not cut off by a
        // container or the window. A plain panel draws nothing; what it holds is checked instead.
        QWidget* parent = w->parentWidget();
        const bool panel = w->metaObject() == &QWidget::staticMetaObject;
        if (!parent->layout() && !panel && !w->objectName().isEmpty() && !w->objectName().startsWith(QLatin1String("qt_"))) {
            QRect sight = w->rect();
            for (QWidget* a = parent; a; a = a->isWindow() ? nullptr : a->parentWidget())
                sight &= QRect(w->mapFrom(a, QPoint(0, 0)), a->size());
            EXPECT_TRUE(sight == w->rect()) << nameOf(w) << " (" << w->width() << "x" << w->height() << ") is cut off to "
                                            << sight.width() << "x" << sight.height();
        }
        if (auto* l = qobject_cast<QLabel*>(w)) {
            const bool rich = l->textFormat() == Qt::RichText || (l->textFormat() == Qt::AutoText && Qt::mightBeRichText(l->text()));
            if (l->text().isEmpty() || rich) continue;
            expectTextFits(l, l->text(), l->contentsRect(), l->wordWrap() ? Qt::TextWordWrap : 0);
            // A placed label's text lies clear of the controls beside it: a text partly under a
            // button is lost. One that a control covers whole is hidden by the window's design.
            if (parent->layout() || l->objectName().isEmpty()) continue;
            const QRect text = QFontMetrics(l->font())
                                   .boundingRect(l->contentsRect(), Qt::AlignLeft | Qt::AlignTop | Qt::TextShowMnemonic |
                                                                        (l->wordWrap() ? Qt::TextWordWrap : 0), l->text())
                                   .translated(l->pos());
            for (QWidget* other : parent->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
                if (other != l && other->isVisibleTo(window) && !other->objectName().isEmpty() && !other->geometry().contains(text)) {
                    EXPECT_FALSE(text.intersects(other->geometry()))
                        << nameOf(l) << "'s text (" << text.x() << "," << text.y() << " " << text.width() << "x" << text.height()
                        << ") runs into " << nameOf(other) << " at " << other->x() << "," << other->y();
                }
        } else if (auto* b = qobject_cast<QAbstractButton*>(w); b && !b->text().isEmpty()) {
            QStyleOptionButton opt;
            opt.initFrom(b);
            opt.text = b->text();
            const auto element = qobject_cast<QPushButton*>(b) ? QStyle::SE_PushButtonContents
                               : qobject_cast<QRadioButton*>(b) ? QStyle::SE_RadioButtonContents : QStyle::SE_CheckBoxContents;
            expectTextFits(b, b->text(), b->style()->subElementRect(element, &opt, b), 0);
        } else if (auto* g = qobject_cast<QGroupBox*>(w); g && !g->title().isEmpty()) {
            QStyleOptionGroupBox opt;
            opt.initFrom(g);
            opt.text = g->title();
            opt.subControls = QStyle::SC_GroupBoxLabel | QStyle::SC_GroupBoxFrame;
            opt.lineWidth = 1;
            const QRect label = g->style()->subControlRect(QStyle::CC_GroupBox, &opt, QStyle::SC_GroupBoxLabel, g);
            EXPECT_LE(label.right(), g->width()) << nameOf(g) << " cuts off its title \"" << g->title().toStdString() << "\"";
        } else if (auto* t = qobject_cast<QTabBar*>(w)) {
            for (int i = 0; i < t->count(); ++i)
                EXPECT_LE(t->tabRect(i).right(), t->width()) << nameOf(t) << " cuts off the tab \"" << t->tabText(i).toStdString() << "\"";
        } else if (qobject_cast<QLineEdit*>(w) || qobject_cast<QComboBox*>(w)) {
            // A line of text inside a frame of two pixels above and below.
            EXPECT_GE(w->height(), QFontMetrics(w->font()).height() + 4) << nameOf(w) << " is too low for its text";
        }
    }
}

// Each Alt+letter a window offers leads to one control a person can reach.
inline void expectAcceleratorsLeadToOneControlEach(QWidget* window)
{
    QMap<QString, QStringList> owners;
    auto add = [&](const QString& text, const QWidget* w) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (!key.isEmpty()) owners[key] << QString::fromStdString(nameOf(w));
    };
    for (QWidget* w : window->findChildren<QWidget*>()) {
        if (!onScreen(w, window) || insideComposite(w, window)) continue;
        if (auto* b = qobject_cast<QAbstractButton*>(w)) add(b->text(), b);
        else if (auto* l = qobject_cast<QLabel*>(w); l && l->buddy()) add(l->text(), l);
        else if (auto* g = qobject_cast<QGroupBox*>(w)) add(g->title(), g);
        else if (auto* t = qobject_cast<QTabBar*>(w))
            for (int i = 0; i < t->count(); ++i)
                if (t->isTabEnabled(i)) add(t->tabText(i), t);
    }
    for (auto it = owners.begin(); it != owners.end(); ++it)
        EXPECT_EQ(it.value().size(), 1) << it.key().toStdString() << " belongs to " << it.value().join(QStringLiteral(", ")).toStdString();
}

// Tab goes round the controls a person can see, and gets out of each one.
inline void expectTabStaysOnScreen(QWidget* window)
{
    QWidget* start = QApplication::focusWidget();
    if (!start || start->window() != window) return;
    int stops = 0;
    for (QWidget* w : window->findChildren<QWidget*>())
        if ((w->focusPolicy() & Qt::TabFocus) && onScreen(w, window) && !w->focusProxy()) ++stops;
    QList<QWidget*> seen;
    for (QWidget* f = start; f && !seen.contains(f);) {
        seen << f;
        EXPECT_TRUE(onScreen(f, window)) << "Tab reaches " << nameOf(f) << ", which is out of sight";
        QTest::keyClick(f, Qt::Key_Tab);
        QWidget* next = QApplication::focusWidget();
        if (next == f && stops > 1) ADD_FAILURE() << "Tab stays in " << nameOf(f);
        f = next == f ? nullptr : next;
    }
    if (start->isVisible()) start->setFocus(Qt::OtherFocusReason);
}

// Pages moved out of sight do not give the window any of its size.
inline void expectSizedByWhatIsInSight(QWidget* window)
{
    auto* view = dynamic_cast<qt::FormView*>(window);
    if (!view || !view->form()) return;
    const Form& form = *view->form();
    int right = qt::twipsToPixels(form.Width() - 120, view->logicalDpiX());
    int bottom = 0;
    for (const Control* c : form.controls()) {
        const QWidget* w = view->widgetOf(*c);
        if (!w || w->parentWidget() != window || !w->isVisibleTo(window) || w->visibleRegion().isEmpty()) continue;
        right = std::max(right, w->geometry().right() + 1);
        bottom = std::max(bottom, w->geometry().bottom() + 1);
    }
    const int gap = qt::twipsToPixels(60, view->logicalDpiX());
    EXPECT_LE(window->width(), right + gap + 1) << "the window is wider than what it shows";
    EXPECT_GE(window->height(), bottom) << "the window cuts off its lowest control";
}

inline void expectWindowWhole(QWidget* window)
{
    EXPECT_FALSE(window->windowTitle().trimmed().isEmpty()) << nameOf(window) << " has no title";
    // A message box, sized by its text, still holds its title beside the title bar's buttons.
    if (qobject_cast<QMessageBox*>(window)) {
        QFont bold = window->font();
        bold.setBold(true);
        EXPECT_GE(window->width(), QFontMetrics(bold).horizontalAdvance(window->windowTitle()) + qt::kTitleBarChrome)
            << "the window manager would cut off the title \"" << window->windowTitle().toStdString() << "\"";
    }
    expectNothingClipped(window);
    expectAcceleratorsLeadToOneControlEach(window);
    expectSizedByWhatIsInSight(window);
    expectTabStaysOnScreen(window);
}

} // namespace steplets::test
