#include "VirtualClock.h"
#include "controls/Timer.h"
#include <limits>

namespace steplets::scripted {

VirtualClock::VirtualClock(QDateTime start) : m_start(std::move(start)) {}

QString VirtualClock::stamp() const {
    const QDateTime t = moment();
    const QString whole = t.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    return t.time().msec() == 0 ? whole : whole + t.toString(QStringLiteral(".zzz"));
}

void VirtualClock::timerChanged(Timer& timer) {
    if (!timer.armed()) { m_timers.erase(&timer); return; }
    Entry& e = m_timers[&timer];
    e.due = m_elapsed + timer.Interval();
    e.order = ++m_order;
}

void VirtualClock::forget(Timer& timer) { m_timers.erase(&timer); }

Timer* VirtualClock::earliest(qint64 limit) const {
    Timer* best = nullptr;
    const Entry* bestEntry = nullptr;
    for (const auto& [timer, e] : m_timers) {
        if (e.running || e.due > limit) continue;
        if (!bestEntry || e.due < bestEntry->due || (e.due == bestEntry->due && e.order < bestEntry->order)) {
            best = timer;
            bestEntry = &e;
        }
    }
    return best;
}

bool VirtualClock::hasTimer() const { return earliest(std::numeric_limits<qint64>::max()) != nullptr; }

void VirtualClock::fire(Timer* timer) {
    Entry& e = m_timers[timer];
    if (e.due > m_elapsed) m_elapsed = e.due;
    // The next tick is one interval after this one; a handler that changes the timer reschedules it.
    e.due += timer->Interval();
    e.order = ++m_order;
    e.running = true;
    struct Done {
        VirtualClock* clock;
        Timer* timer;
        ~Done() {
            auto it = clock->m_timers.find(timer);
            if (it != clock->m_timers.end()) it->second.running = false;
        }
    } done{this, timer};
    timer->Tick();
}

bool VirtualClock::fireNext() {
    Timer* t = earliest(std::numeric_limits<qint64>::max());
    if (!t) return false;
    fire(t);
    return true;
}

void VirtualClock::advance(qint64 ms) {
    const qint64 target = m_elapsed + ms;
    while (Timer* t = earliest(target)) fire(t);
    if (target > m_elapsed) m_elapsed = target;
}

} // namespace steplets::scripted
