#pragma once
// The desktop program's composition root: the embedded default on first start, the failure
// reporter of the support library (a message box and a log file), the ports on their real
// backends, and the host's call.
#include "HostOptions.h"
#include "platform/ErrorReporter.h"
#include <QString>
#include <memory>

namespace steplets::qt { class QtUiHost; }
namespace steplets::ol { class Application; }
namespace steplets { struct Ports; }

namespace steplets::desktop {

// The per-user state directory: $XDG_STATE_HOME/steplets, else ~/.local/state/steplets.
QString stateDirectory();
// The program's log: in the data folder when the user chose one (--home or $STEPLETS_HOME), so
// each folder keeps its own history, else in the state directory.
QString logFilePath(const HostOptions& options);
// Appends one line, with the time, to a log file.
void appendToLog(const QString& logFile, const QString& line);
// Where the help pages are looked for when none lies beside the help file: the installed data
// folder, then the source tree's when the program runs from its build folder.
QStringList helpFolders();

// Creates both databases with the demo data and the demo contact cards in `home`, exactly as
// `steplets-admin seed-demo` lays them out, when neither database is there yet, or finishes what
// an earlier first start made completely and was stopped before it had moved it all in. True
// when it put them there; a home with one database but not the other is left for the component
// to report.
bool ensureEmbeddedDefault(const QString& home);

// What the user is told of a failure: one sentence of what failed, one of what to do, and the
// technical details (failure number, source, version and the trail) for a details button.
struct FailureMessage {
    QString what;
    QString advice;
    QString details;
};
// What to do is said for the parts a user can mend (the databases, the task store, the settings
// file), naming where they lie under `home`, the data folder.
FailureMessage failureMessage(const QString& version, const QString& description, const QString& number,
                              const QString& source, const QString& location, const QString& logFile,
                              const QString& home = {});

// Shows each report to the user in plain words, with the details behind a button, and appends
// the whole report, with the time, to the log file. `reported` is set, so the program can end
// with status 1.
class DesktopReporter : public ErrorReporter {
public:
    DesktopReporter(qt::QtUiHost& host, QString logFile, bool* reported = nullptr, QString home = {})
        : m_host(host), m_logFile(std::move(logFile)), m_reported(reported), m_home(std::move(home)) {}
    void Report(const QString& version, const QString& description, const QString& number, const QString& source,
                const QString& location) override;

private:
    qt::QtUiHost& m_host;
    QString m_logFile;
    bool* m_reported;
    QString m_home;
};

// The directory the session works in: the option, else $STEPLETS_HOME, else the default.
QString homeOf(const HostOptions& options);
// Where settings files lie: <home>/config when the data folder was chosen, else the user's
// configuration folder.
QString configDirectory(const HostOptions& options, const QString& home);

// Wires every port for `home` into `ports` and returns the task store's Application. Settings
// lie in <home>/config when the home was chosen, else in the user's configuration.
std::shared_ptr<ol::Application> wirePorts(const HostOptions& options, const QString& home,
                                           const std::shared_ptr<qt::QtUiHost>& host, bool* reported, Ports& ports);

// The whole session: the embedded default, the ports, OpenSteplets with the options' arguments.
// Returns the exit status: 0, or 1 when a failure was reported or escaped a window's handlers.
int runSession(const HostOptions& options, const std::shared_ptr<qt::QtUiHost>& host);

} // namespace steplets::desktop
