#pragma once
// What the widget tests share: one QApplication on the offscreen platform, a driver that plays a
// person at the screen while the component sits in its modal loops, small hands for keys,
// screenshots kept as test artifacts, and what every window must hold on the screen: a title, nothing cut off (a control by its container or the window, a text by its
// control), every accelerator leading to one control, and the Tab key going round what a person
// can see; the generic binding's windows also not sized by pages moved out of sight.
#include "FormView.h"
#include "QtUiHost.h"
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <deque>
#include <functional>
#include <gtest/gtest.h>

namespace steplets::test {

inline QApplication& widgetApp()
{
    static int argc = 1;
    static char name[] = "widget-tests";
    static char* argv[] = {name, nullptr};
    static QApplication* app = [] {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        auto* a = new QApplication(argc, argv);
        QApplication::setQuitOnLastWindowClosed(false);
        return a;
    }();
    return *app;
}

// The visible top-level widget of that object name, or nullptr.
inline QWidget* shownWindow(const QString& objectName)
{
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible() && w->objectName() == objectName) return w;
    return nullptr;
}

// A grab of `w` into the build directory's artifacts, and into the folder named by
// STEPLETS_DOCS_DIR when it is set, for the README. A grab at a scale other than 100 % is an
// artifact only, named with its scale ("name@2x").
inline void saveScreenshot(QWidget* w, const QString& name)
{
    const QPixmap shot = w->grab();
    const qreal scale = shot.devicePixelRatio();
    QDir().mkpath(QStringLiteral(STEPLETS_WIDGET_ARTIFACTS));
    const QString file = scale == 1.0 ? name : QStringLiteral("%1@%2x").arg(name).arg(scale);
    EXPECT_TRUE(shot.save(QDir(QStringLiteral(STEPLETS_WIDGET_ARTIFACTS)).filePath(file + QStringLiteral(".png"))));
    const QString docs = qEnvironmentVariable("STEPLETS_DOCS_DIR");
    EXPECT_TRUE(docs.isEmpty() || scale != 1.0 || shot.save(QDir(docs).filePath(name + QStringLiteral(".png"))));
}

// Plays the person at the screen: each step waits until its condition holds, then acts. An act
// may open a modal window and not return until it closes; the next step is already scheduled
// by then, so it runs inside that window's loop.
class Driver : public QObject {
public:
    Driver& then(const char* what, std::function<bool()> ready, std::function<void()> action)
    {
        m_steps.push_back({what, std::move(ready), std::move(action)});
        return *this;
    }
    void start()
    {
        m_clock.start();
        schedule();
    }
    bool finished() const { return m_steps.empty(); }

private:
    struct Step {
        const char* what;
        std::function<bool()> ready;
        std::function<void()> action;
    };
    // Bound to the driver, so a poll still pending when the test ends never runs.
    void schedule() { QTimer::singleShot(10, this, [this] { poll(); }); }
    void poll()
    {
        if (m_steps.empty()) return;
        if (m_clock.elapsed() > 30000) {
            // Nobody can close the windows the component keeps up: leave the test program.
            std::fprintf(stderr, "widget test stuck waiting for: %s\n", m_steps.front().what);
            std::_Exit(1);
        }
        if (!m_steps.front().ready()) return schedule();
        Step step = std::move(m_steps.front());
        m_steps.pop_front();
        schedule();
        step.action();
    }

    std::deque<Step> m_steps;
    QElapsedTimer m_clock;
};

inline void showAndWait(QWidget& w) { w.show(); ASSERT_TRUE(QTest::qWaitForWindowExposed(&w)); }

template <typename W = QWidget>
W* child(QWidget& parent, const QString& name)
{
    W* w = parent.findChild<W*>(name);
    EXPECT_NE(w, nullptr) << "no widget " << name.toStdString();
    return w;
}
// Types over what the field holds, as a person selecting all first.
inline void typeInto(QWidget* w, const QString& text) { QTest::keyClick(w, Qt::Key_A, Qt::ControlModifier); QTest::keyClicks(w, text); }
inline void press(QWidget* button) { QTest::keyClick(button, Qt::Key_Space); }

// --- What every window must hold ---

inline std::string nameOf(const QWidget* w)
{
    return (w->objectName().isEmpty() ? QString::fromLatin1(w->metaObject()->className()) : w->objectName()).toStdString();
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
    EXPECT_TRUE(need.width() <= room.width() && need.height() <= room.height()) << nameOf(w) << " cuts off \"" << text.toStdString() << "\"";
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
            const int wrap = l->wordWrap() ? Qt::TextWordWrap : 0;
            expectTextFits(l, l->text(), l->contentsRect(), wrap);
            // A placed label's text lies clear of the controls beside it: a text partly under a
            // button is lost. One that a control covers whole is hidden by the window's design.
            if (parent->layout() || l->objectName().isEmpty()) continue;
            const QRect text = QFontMetrics(l->font())
                                   .boundingRect(l->contentsRect(), Qt::AlignLeft | Qt::AlignTop | Qt::TextShowMnemonic | wrap, l->text())
                                   .translated(l->pos());
            for (QWidget* other : parent->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
                EXPECT_FALSE(other != l && other->isVisibleTo(window) && !other->objectName().isEmpty() &&
                             !other->geometry().contains(text) && text.intersects(other->geometry()))
                    << nameOf(l) << "'s text runs into " << nameOf(other);
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
        if (const QString key = QKeySequence::mnemonic(text).toString(); !key.isEmpty()) owners[key] << QString::fromStdString(nameOf(w));
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
    int right = qt::twipsToPixels(view->form()->Width() - 120, view->logicalDpiX()), bottom = 0;
    for (const Control* c : view->form()->controls()) {
        const QWidget* w = view->widgetOf(*c);
        if (!w || w->parentWidget() != window || !w->isVisibleTo(window) || w->visibleRegion().isEmpty()) continue;
        right = std::max(right, w->geometry().right() + 1);
        bottom = std::max(bottom, w->geometry().bottom() + 1);
    }
    EXPECT_LE(window->width(), right + qt::twipsToPixels(60, view->logicalDpiX()) + 1) << "the window is wider than what it shows";
    EXPECT_GE(window->height(), bottom) << "the window cuts off its lowest control";
}

// A title (beside the title bar's buttons, for a message box sized by its text), nothing cut off,
// one control per accelerator, a size from what is in sight, and Tab going round what is seen.
inline void expectWindowWhole(QWidget* window)
{
    EXPECT_FALSE(window->windowTitle().trimmed().isEmpty()) << nameOf(window) << " has no title";
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
