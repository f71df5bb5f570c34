#pragma once
// A script played as the user of the desktop program (--play FILE): the steps of a scenario
// file's "script", done as real input on the program's own windows while its clock is virtual,
// so an end-to-end test drives the very program a user starts and every pause takes no time.
#include "EventLog.h"
#include "QtScriptDriver.h"
#include "Script.h"
#include "VirtualClock.h"
#include <QString>
#include <memory>

namespace steplets::desktop {

class Playback {
public:
    // Reads the "script" member of a scenario file; nullptr and a sentence in *problem when the
    // file cannot be read or its steps are malformed.
    static std::unique_ptr<Playback> load(const QString& file, QString* problem);

    // The clock the host must run on, made before the host.
    std::shared_ptr<scripted::VirtualClock> clock() const { return m_clock; }
    // Starts playing on `host` once it exists.
    void attach(qt::QtUiHost& host);
    // After the session: empty when every step was played, else what was left.
    QString leftOver() const;

private:
    scripted::Script m_script;
    std::shared_ptr<scripted::VirtualClock> m_clock;
    std::unique_ptr<scripted::EventLog> m_log;
    std::unique_ptr<qtplay::QtScriptDriver> m_driver;
};

} // namespace steplets::desktop
