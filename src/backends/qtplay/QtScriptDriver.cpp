#include "QtScriptDriver.h"
#include "ContactPickerDialog.h"
#include "FormView.h"
#include "QtUserActs.h"
#include "controls/Form.h"
#include <QCoreApplication>
#include <QMessageBox>

namespace steplets::qtplay {

using scripted::Step;

namespace {
// How long a step may wait for its target while timers keep firing: a day of virtual time.
constexpr qint64 kPatienceMs = 24LL * 60 * 60 * 1000;
// Yields with no timer left before the component is taken to wait for nothing.
constexpr long kIdleYieldLimit = 1000000;
// Real time with nothing happening before the play is taken to hang.
constexpr qint64 kStallMs = 10000;
const QEvent::Type kDriveEvent = static_cast<QEvent::Type>(QEvent::User + 57);
} // namespace

QtScriptDriver::QtScriptDriver(scripted::Script& script, scripted::VirtualClock& clock, scripted::EventLog& log,
                               qt::QtUiHost& host)
    : m_script(script), m_clock(clock), m_log(log), m_host(host)
{
    m_sinceProgress.start();
    m_watchdog.setInterval(250);
    connect(&m_watchdog, &QTimer::timeout, this, [this] { checkProgress(); });
    m_watchdog.start();
}

void QtScriptDriver::cannotPlay(const QString& why) { m_host.abort(HostAbort(HostAbort::Reason::CannotPlay, why)); }

// --- What waits ---

void QtScriptDriver::waiting(const qt::UserWait& wait)
{
    m_sinceProgress.restart();
    m_waits.push_back({wait, m_clock.elapsedMs(), m_yieldDepth});
    post();
}

void QtScriptDriver::doneWaiting(const qt::UserWait& wait)
{
    m_sinceProgress.restart();
    for (auto it = m_waits.rbegin(); it != m_waits.rend(); ++it)
        if (it->what.window == wait.window && it->what.kind == wait.kind) {
            m_waits.erase(std::next(it).base());
            break;
        }
    if (!m_waits.empty()) {
        m_waits.back().since = m_clock.elapsedMs();
        post();
    }
}

bool QtScriptDriver::stillWaiting(const Wait& w) const
{
    if (!w.what.window) return false;
    if (w.what.kind != qt::UserWait::Kind::Form) return w.what.window->isVisible();
    const Form& form = *w.what.form;
    const auto& stack = m_host.modalStack();
    return form.isLoaded() && form.Visible() && !stack.empty() && stack.back() == &form;
}

bool QtScriptDriver::accepts(const Wait& w, const Step& step) const
{
    switch (w.what.kind) {
    case qt::UserWait::Kind::Form:
        return step.isForForm(w.what.form->name());
    case qt::UserWait::Kind::MsgBox: return step.kind == Step::Kind::MsgBox;
    case qt::UserWait::Kind::Item: return step.kind == Step::Kind::Item;
    case qt::UserWait::Kind::Picker: return step.kind == Step::Kind::Picker;
    }
    return false;
}

QString QtScriptDriver::nameOf(const Wait& w) const
{
    switch (w.what.kind) {
    case qt::UserWait::Kind::Form: return QStringLiteral("the window ") + w.what.form->name();
    case qt::UserWait::Kind::MsgBox: return QStringLiteral("the message box \"%1\"").arg(w.what.box->title);
    case qt::UserWait::Kind::Item: return QStringLiteral("the item window of \"%1\"").arg(w.what.item->EntryID());
    case qt::UserWait::Kind::Picker: return QStringLiteral("the contact picker");
    }
    return {};
}

// --- Steps ---

// Posted at low priority: whatever the last act left for the loop (the widgets catching up with
// the models, a layout, a window going) runs first, so the next step meets the screen a person
// would see.
void QtScriptDriver::post()
{
    if (m_posted) return;
    m_posted = true;
    QCoreApplication::postEvent(this, new QEvent(kDriveEvent), Qt::LowEventPriority);
}

bool QtScriptDriver::event(QEvent* e)
{
    if (e->type() != kDriveEvent) return QObject::event(e);
    drive();
    return true;
}

// One step, or one timer, per visit of the waiting loop; the loop runs its own deferred work
// (the widgets catching up with the models, windows going) between two visits.
void QtScriptDriver::drive()
{
    m_posted = false;
    if (m_host.aborting() || m_waits.empty()) return;
    const Wait top = m_waits.back();
    // Inside the component's work: the step waits until the yield is over.
    if (m_yieldDepth > top.yieldDepth) return;
    // Its loop is ending; the wait below takes over when it has.
    if (!stillWaiting(top)) return;
    if (m_script.atEnd()) return cannotPlay(QStringLiteral("the script ended while %1 was waiting").arg(nameOf(top)));
    m_sinceProgress.restart();
    const Step& next = m_script.peek();
    if (next.kind == Step::Kind::Wait) {
        const Step wait = m_script.take();
        const qint64 ms = qRound64(wait.json.value(QStringLiteral("wait")).toDouble() * 1000.0);
        m_waitEnds = m_clock.elapsedMs() + ms;
        m_host.runUserAct([&] { m_clock.advance(ms); });
        m_waitEnds.reset();
    } else if (accepts(top, next)) {
        const Step step = m_script.take();
        m_idleYields = 0;
        m_waits.back().since = m_clock.elapsedMs();
        m_host.runUserAct([&] {
            if (m_beforeStep) m_beforeStep(step);
            try {
                perform(top, step);
            } catch (const UserActionRefused& refused) {
                throw UserActionRefused(QStringLiteral("%1: %2").arg(step.describe(), QString::fromUtf8(refused.what())));
            }
        });
    } else {
        if (m_clock.elapsedMs() - top.since > kPatienceMs)
            return cannotPlay(QStringLiteral("%1: its target never came; %2 was waiting for a day of virtual time")
                                  .arg(next.describe(), nameOf(top)));
        bool fired = false;
        m_host.runUserAct([&] { fired = m_clock.fireNext(); });
        if (!fired && !m_host.aborting())
            return cannotPlay(QStringLiteral("%1 cannot be done: %2 is waiting and no timer is left")
                                  .arg(next.describe(), nameOf(top)));
    }
    post();
}

void QtScriptDriver::perform(const Wait& w, const Step& step)
{
    switch (w.what.kind) {
    case qt::UserWait::Kind::Form: {
        auto* view = m_host.viewOf(*w.what.form);
        if (!view) throw UserActionRefused(QStringLiteral("the window %1 has no view").arg(w.what.form->name()));
        if (auto snap = actOnForm(*view, *w.what.form, step)) m_log.record(QStringLiteral("snapshot"), *snap);
        break;
    }
    case qt::UserWait::Kind::MsgBox:
        answerMessageBox(static_cast<QMessageBox&>(*w.what.window), *w.what.box, step);
        break;
    case qt::UserWait::Kind::Item:
        actInItemWindow(static_cast<QDialog&>(*w.what.window), step);
        break;
    case qt::UserWait::Kind::Picker:
        answerPicker(static_cast<qt::ContactPickerDialog&>(*w.what.window), *w.what.picker, step);
        break;
    }
}

// --- Yields of the component ---

void QtScriptDriver::yielding(bool inside)
{
    m_sinceProgress.restart();
    if (inside) {
        ++m_yieldDepth;
        return;
    }
    --m_yieldDepth;
    // As on the scripted host, each yield lets the clock reach the next timer.
    bool fired = false;
    m_host.runUserAct([&] { fired = m_clock.fireNext(); });
    if (fired) m_idleYields = 0;
    else if (++m_idleYields > kIdleYieldLimit)
        return cannotPlay(QStringLiteral("the component keeps yielding to the event loop and no timer is left"));
    actInYield();
    if (!m_waits.empty()) post();
}

// A yield is where a person's clicks get in while the component works: once a scripted wait has
// run out, the steps that follow it go to the active window, as far as they are meant for it.
void QtScriptDriver::actInYield()
{
    if (!m_waitEnds || m_clock.elapsedMs() < *m_waitEnds || m_host.aborting()) return;
    auto forActive = [this] {
        const auto& stack = m_host.modalStack();
        return !m_host.aborting() && m_script.nextIsForActive(stack.empty() ? nullptr : stack.back());
    };
    if (!forActive()) return;
    m_waitEnds.reset();
    while (forActive()) {
        const Step step = m_script.take();
        Form& active = *m_host.modalStack().back();
        qt::FormView* view = m_host.viewOf(active);
        m_host.runUserAct([&] {
            if (!view) throw UserActionRefused(QStringLiteral("%1: the window %2 has no view").arg(step.describe(), active.name()));
            if (m_beforeStep) m_beforeStep(step);
            try {
                if (auto snap = actOnForm(*view, active, step)) m_log.record(QStringLiteral("snapshot"), *snap);
            } catch (const UserActionRefused& refused) {
                throw UserActionRefused(QStringLiteral("%1: %2").arg(step.describe(), QString::fromUtf8(refused.what())));
            }
        });
    }
}

// A loop that goes on waiting for a window nobody can see, or a play with nothing to do, would
// hang the player: after a while of real time with no progress the play ends and says why.
void QtScriptDriver::checkProgress()
{
    if (m_waits.empty() || m_host.aborting() || m_sinceProgress.elapsed() < kStallMs) return;
    const Wait& top = m_waits.back();
    cannotPlay(stillWaiting(top)
                   ? QStringLiteral("nothing happened for %1 s while %2 was waiting").arg(kStallMs / 1000).arg(nameOf(top))
                   : QStringLiteral("%1 is no longer shown, but the host still waits in its loop").arg(nameOf(top)));
}

// --- What the user is shown ---

void QtScriptDriver::messageBoxAnswered(const MessageBoxRequest& box, MsgBoxAnswer answer)
{
    m_log.messageBox(box, answerName(answer));
}

void QtScriptDriver::itemDisplayed(ol::Item& item, bool contact)
{
    m_log.displayed(item, contact ? QStringLiteral("contact") : QStringLiteral("task"));
}

} // namespace steplets::qtplay
