#pragma once
// The failure discipline of every routine: one Guard per routine extends the error trail with the
// routine's literal name, tracks the number of the statement that is running (10, 20, 30 ...),
// and is the routine's one handler. A routine reads as its steps:
//
//     bool modInitialize::GetRegSettings() {
//         Guard g("modInitialize: GetRegSettings");
//         return g.orElse(false, [&] {
//             g(20); auto key = settings.OpenKey(...);
//             g(30); ...
//             return true;
//         });
//     }
//
// The endings: orElse/attempt leave (with the fallback) after the report; run(body, after) does
// one more action after the report (unload the window, release objects); step() reports and goes
// on with the next statement; ignoring() keeps the failure's number for the routine to test, and
// ignoringTest() is a test of such a stretch, true when it fails.
// A HostAbort (the host cannot go on with the session at all) passes every guard.
#include "HostAbort.h"
#include "runtime/Failure.h"
#include <QString>
#include <exception>
#include <new>
#include <utility>

namespace steplets {

// Where the discipline keeps its trail and sends its reports; the session installs it.
class FailureSink {
public:
    virtual ~FailureSink() = default;
    virtual void enterTrail(const QString& literal) = 0;       // roll the trail, add CR LF "X:" literal
    virtual QString trail() const = 0;
    virtual void report(const Failure& failure, const QString& location) = 0;
};

void installFailureSink(FailureSink* sink);
FailureSink& failureSink();

// Turns whatever was thrown into a Failure; anything but a Failure is an internal one.
Failure currentFailure(std::exception_ptr e);

class Guard {
public:
    explicit Guard(const QString& literal, int firstLine = 10);
    // A handler that writes no trail entry of its own (the component's entry point).
    struct Untraced {};
    explicit Guard(Untraced) : m_line(10) {}
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

    // Marks the statement about to run.
    Guard& operator()(int line) { m_line = line; return *this; }
    int line() const { return m_line; }
    // A further trail entry of the same form, telling the stages of a long routine apart.
    void mark(const QString& literal);
    // "trail:Line N" as it stands now.
    QString location() const;
    // Hands a failure to ReportError with the present location.
    void report(const Failure& failure) const;

    // Runs the body; after a failure reports it and gives the fallback.
    template <class R, class F>
    R orElse(R fallback, F&& body) {
        try { return std::forward<F>(body)(); }
        catch (const HostAbort&) { throw; }
        catch (...) { report(currentFailure(std::current_exception())); return fallback; }
    }
    // Runs the body; true when it came through, false after a reported failure.
    template <class F>
    bool attempt(F&& body) {
        try { std::forward<F>(body)(); return true; }
        catch (const HostAbort&) { throw; }
        catch (...) { report(currentFailure(std::current_exception())); return false; }
    }
    // Runs the body; after a reported failure runs `after` (the routine's one more action).
    template <class F, class A>
    bool run(F&& body, A&& after) {
        if (attempt(std::forward<F>(body))) return true;
        std::forward<A>(after)();
        return false;
    }
    // One statement of a routine that goes on with the next statement after a failure.
    template <class F>
    bool step(int line, F&& body) { m_line = line; return attempt(std::forward<F>(body)); }
    // One statement of a stretch that ignores failures: nothing is reported; the failure's
    // number (0 when none) is kept for the routine to test.
    template <class F>
    long ignoring(int line, F&& body) {
        m_line = line;
        try { std::forward<F>(body)(); m_lastError = 0; }
        catch (const HostAbort&) { throw; }
        catch (...) { m_lastError = currentFailure(std::current_exception()).number(); }
        return m_lastError;
    }
    // A test in such a stretch: a test that fails counts as true, as the statement after a
    // failing If goes on into its body; the failure's number is kept as by ignoring().
    template <class F>
    bool ignoringTest(int line, F&& test) {
        bool result = true;
        ignoring(line, [&] { result = static_cast<bool>(std::forward<F>(test)()); });
        return result;
    }
    long lastError() const { return m_lastError; }
    void clearError() { m_lastError = 0; }

private:
    int m_line;
    long m_lastError = 0;
};

} // namespace steplets
