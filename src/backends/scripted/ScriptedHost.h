#pragma once
// The UI host of scenarios and tests: a scripted user and a virtual clock. The component runs on
// the caller's thread as always; whenever it waits for the user (a modal window, a message box,
// an item window, the contact picker) the host takes the next step of the script. A step meant
// for something that is not waiting lets time pass: the earliest timer fires and the host looks
// again. Everything seen is recorded as the transcript's events.
#include "EventLog.h"
#include "HostAbort.h"
#include "Script.h"
#include "UiHost.h"
#include "VirtualClock.h"
#include <QJsonArray>
#include <functional>
#include <optional>
#include <vector>

namespace steplets::scripted {

class ScriptedHost : public UiHost {
public:
    ScriptedHost(Script script, QDateTime start);
    ~ScriptedHost() override;

    // The transcript's events so far, each with its "at".
    const QJsonArray& events() const { return m_log.events(); }
    // The runner adds the reports here.
    EventLog& log() { return m_log; }
    void record(const QString& key, const QJsonValue& value) { m_log.record(key, value); }
    const Script& script() const { return m_script; }
    VirtualClock& clock() { return m_clock; }
    // The modal windows now shown, the active one last.
    const std::vector<Form*>& modalStack() const { return m_stack; }

    // UiHost
    void showModal(Form& form) override;
    void formLoaded(Form& form) override;
    void formHidden(Form& form) override;
    void formRevealed(Form&) override {}
    void formUnloaded(Form& form) override;
    void formDestroyed(Form& form) override;
    MsgBoxAnswer messageBox(const MessageBoxRequest& box) override;
    void DoEvents() override;
    void timerChanged(Timer& timer) override;
    void timerDestroyed(Timer& timer) override;
    Date Now() override { return m_clock.now(); }
    int screenMousePointer() const override { return m_mousePointer; }
    void setScreenMousePointer(int pointer) override { m_mousePointer = pointer; }
    QString helpFile() const override { return m_helpFile; }
    void setHelpFile(const QString& path) override { m_helpFile = path; }
    ContactPickerResult pickContact(const ContactPickerRequest& request) override;
    void displayTask(ol::TaskItem& item, bool modal) override;
    void displayContact(ol::ContactItem& item, bool modal) override;

private:
    // What waits for the user: which steps it takes, whether it still waits, how to name it.
    struct Waiting {
        std::function<bool(const Step&)> accepts;
        std::function<bool()> stillWaiting;
        QString name;
    };
    // The next step for `w`, letting time pass until it comes; nothing when `w` stopped waiting.
    std::optional<Step> nextStep(const Waiting& w);
    void displayItem(ol::Item& item, const QString& kind, bool modal);
    // Inside a yield: the next step, when a wait has run out and it is for the active window.
    void actInYield();
    // Runs component code for the host (a user's act, a timer, an Activate): a refused act
    // ends the play, a failure that no handler took is a defect of the component.
    void run(const QString& what, const std::function<void()>& body);
    [[noreturn]] void cannotPlay(const QString& why);

    Script m_script;
    VirtualClock m_clock;
    EventLog m_log{m_clock};
    std::vector<Form*> m_stack;
    int m_mousePointer = 0;
    QString m_helpFile;
    long m_idleYields = 0;
    std::optional<qint64> m_waitEnds;   // virtual time at which the current wait runs out
};

} // namespace steplets::scripted
