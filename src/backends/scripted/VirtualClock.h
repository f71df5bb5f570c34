#pragma once
// Time for a scripted session: it stands still while the component works and moves only from
// timer to timer, or by a scripted wait, so paced work takes no real time and every run of a
// scenario sees the same moments.
#include "HostClock.h"
#include "runtime/Date.h"
#include <QDateTime>
#include <QString>
#include <map>

namespace steplets {
class Form;
class Timer;
}

namespace steplets::scripted {

class VirtualClock : public HostClock {
public:
    explicit VirtualClock(QDateTime start);

    QDateTime moment() const { return m_start.addMSecs(m_elapsed); }
    Date now() override { return Date::fromQDateTime(moment()); }
    qint64 elapsedMs() const { return m_elapsed; }
    // "YYYY-MM-DDTHH:MM:SS", with ".mmm" when not on a whole second.
    QString stamp() const;

    // A timer's Enabled, Interval or window changed: it falls due one interval from now, or
    // leaves the schedule when it can no longer tick.
    void timerChanged(Timer& timer) override;
    void forget(Timer& timer);
    void timerDestroyed(Timer& timer) override { forget(timer); }

    // Whether a timer is scheduled that can fire now (one whose handler is running cannot).
    bool hasTimer() const;
    // Fires the earliest scheduled timer, moving the clock to its time if that lies ahead.
    // False when there is none.
    bool fireNext();
    // Lets `ms` pass: every timer that falls due within it fires, in order of time.
    void advance(qint64 ms);

private:
    struct Entry {
        qint64 due = 0;
        quint64 order = 0;      // ties fire in the order the timers were scheduled
        bool running = false;
    };
    Timer* earliest(qint64 limit) const;
    void fire(Timer* timer);

    QDateTime m_start;
    qint64 m_elapsed = 0;
    quint64 m_order = 0;
    std::map<Timer*, Entry> m_timers;
};

} // namespace steplets::scripted
