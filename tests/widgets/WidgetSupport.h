#pragma once
// What the widget tests share: one QApplication on the offscreen platform, a driver that plays a
// person at the screen while the component sits in its modal loops, and screenshots kept as
// test artifacts.
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <cstdlib>
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

// A grab of `w` into the build directory's artifacts (and, for the README's pictures, into the
// folder named by STEPLETS_DOCS_DIR when it is set). A grab at a scale other than 100 % is an
// artifact only, named with its scale ("name@2x").
inline void saveScreenshot(QWidget* w, const QString& name, bool forDocs = false)
{
    ASSERT_NE(w, nullptr) << "no window to photograph for " << name.toStdString();
    const QPixmap shot = w->grab();
    const qreal scale = shot.devicePixelRatio();
    const QString file = scale == 1.0 ? name : QStringLiteral("%1@%2x").arg(name).arg(scale);
    QDir().mkpath(QStringLiteral(STEPLETS_WIDGET_ARTIFACTS));
    EXPECT_TRUE(shot.save(QDir(QStringLiteral(STEPLETS_WIDGET_ARTIFACTS)).filePath(file + QStringLiteral(".png"))));
    const QString docs = qEnvironmentVariable("STEPLETS_DOCS_DIR");
    if (forDocs && !docs.isEmpty() && scale == 1.0) {
        EXPECT_TRUE(shot.save(QDir(docs).filePath(name + QStringLiteral(".png"))));
    }
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
    void start(int timeoutMs = 30000)
    {
        m_timeoutMs = timeoutMs;
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
        if (m_clock.elapsed() > m_timeoutMs) {
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
    int m_timeoutMs = 30000;
};

} // namespace steplets::test
