#pragma once
// Plays a script on the Qt host. Whenever the host waits for the user (a modal form's loop, a
// message box, an item window, the picker) the driver posts the next step into that very loop
// and performs it there as real input. A step meant for something that is not waiting lets time
// pass instead: the earliest virtual timer fires, exactly as on the scripted host, so a played
// session means the same on both hosts and its transcript comes out the same.
#include "EventLog.h"
#include "QtUiHost.h"
#include "Script.h"
#include "UserDriver.h"
#include "VirtualClock.h"
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>
#include <vector>

namespace steplets::qtplay {

class QtScriptDriver : public QObject, public qt::UserDriver {
public:
    QtScriptDriver(scripted::Script& script, scripted::VirtualClock& clock, scripted::EventLog& log, qt::QtUiHost& host);
    // Told of each step just before it is played, while its window waits for it.
    void setBeforeStep(std::function<void(const scripted::Step&)> beforeStep) { m_beforeStep = std::move(beforeStep); }

    // UserDriver
    void waiting(const qt::UserWait& wait) override;
    void doneWaiting(const qt::UserWait& wait) override;
    void yielding(bool inside) override;
    void formShown(Form& form) override { m_log.shown(form); }
    void formUnloaded(Form& form) override { m_log.unloaded(form); }
    void messageBoxAnswered(const MessageBoxRequest& box, MsgBoxAnswer answer) override;
    void itemDisplayed(ol::Item& item, bool contact) override;
    void pickerOpened(const ContactPickerRequest& request) override { m_log.picker(request); }

protected:
    bool event(QEvent* e) override;

private:
    struct Wait {
        qt::UserWait what;
        qint64 since = 0;       // virtual time at which it began waiting for its next step
        int yieldDepth = 0;     // the component's yields when it began
    };
    void post();
    void drive();
    bool accepts(const Wait& w, const scripted::Step& step) const;
    bool stillWaiting(const Wait& w) const;
    QString nameOf(const Wait& w) const;
    void perform(const Wait& w, const scripted::Step& step);
    void actInYield();
    void checkProgress();
    void cannotPlay(const QString& why);

    scripted::Script& m_script;
    scripted::VirtualClock& m_clock;
    scripted::EventLog& m_log;
    qt::QtUiHost& m_host;
    std::vector<Wait> m_waits;
    int m_yieldDepth = 0;
    bool m_posted = false;
    long m_idleYields = 0;
    std::optional<qint64> m_waitEnds;   // virtual time at which the current wait step runs out
    QTimer m_watchdog;
    QElapsedTimer m_sinceProgress;      // real time since anything happened
    std::function<void(const scripted::Step&)> m_beforeStep;
};

} // namespace steplets::qtplay
