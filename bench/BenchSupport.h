#pragma once
// What every benchmark shares: a median of timed runs and the one-line figure format.
#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace steplets::bench {

constexpr int kRuns = 5;

inline double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// Runs `setup` untimed and `measure` timed, kRuns times; the median in milliseconds.
inline double timeIt(const std::function<void()>& setup, const std::function<void()>& measure)
{
    std::vector<double> ms;
    for (int i = 0; i < kRuns; ++i) {
        setup();
        QElapsedTimer t;
        t.start();
        measure();
        ms.push_back(t.nsecsElapsed() / 1e6);
    }
    return median(ms);
}

inline double timeIt(const std::function<void()>& measure) { return timeIt([] {}, measure); }

// "name: 12.3 MB (target <= 80 MB)"; small figures keep three decimals.
inline void printFigure(const char* name, double value, const char* unit, double target)
{
    std::printf(value < 1 ? "%s: %.3f %s (target <= %g %s)\n" : "%s: %.1f %s (target <= %g %s)\n", name, value, unit, target, unit);
    std::fflush(stdout);
}

// "name: 12.3 ms (target <= 250 ms)".
inline void print(const char* name, double ms, double target) { printFigure(name, ms, "ms", target); }

} // namespace steplets::bench
