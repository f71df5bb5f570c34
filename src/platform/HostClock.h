#pragma once
// The present moment and the timers of a UI host. The desktop program runs on the system clock
// and real timers; a played session runs on a virtual clock that moves from timer to timer, so
// the same host code paces a run of tasks in no real time and every play sees the same moments.
#include "runtime/Date.h"

namespace steplets {

class Timer;

class HostClock {
public:
    virtual ~HostClock() = default;
    virtual Date now() = 0;
    // A timer's Enabled, Interval or window changed: it is scheduled afresh or leaves the schedule.
    virtual void timerChanged(Timer& timer) = 0;
    virtual void timerDestroyed(Timer& timer) = 0;
};

} // namespace steplets
