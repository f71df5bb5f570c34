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

namespace steplets::desktop {

// The per-user state directory: $XDG_STATE_HOME/steplets, else ~/.local/state/steplets.
QString stateDirectory();
// Where each failure report is appended.
QString logFilePath();
// Appends one line, with the time, to that log.
void appendToLog(const QString& line);
// Where the help pages are looked for when none lies beside the help file: the installed data
// folder, then the source tree's when the program runs from its build folder.
QStringList helpFolders();

// Creates both databases with the demo data and the demo contact cards in `home`, exactly as
// `steplets-admin seed-demo` lays them out, when neither database is there yet. True when it
// created them; a home with one database but not the other is left for the component to report.
bool ensureEmbeddedDefault(const QString& home);

// Shows each report to the user and appends it, with the time, to the log file.
class DesktopReporter : public ErrorReporter {
public:
    explicit DesktopReporter(qt::QtUiHost& host) : m_host(host) {}
    void Report(const QString& version, const QString& description, const QString& number, const QString& source,
                const QString& location) override;

private:
    qt::QtUiHost& m_host;
};

// The directory the session works in: the option, else $STEPLETS_HOME, else the default.
QString homeOf(const HostOptions& options);

// Wires every port of the process for `home` and returns the task store's Application.
// Settings lie in <home>/config when the home was chosen, else in the user's configuration.
std::shared_ptr<ol::Application> wirePorts(const HostOptions& options, const QString& home,
                                           const std::shared_ptr<qt::QtUiHost>& host);

// The whole session: the embedded default, the ports, OpenSteplets with the options' arguments.
// Returns the exit status: 0, or 1 when a failure escaped a window's handlers.
int runSession(const HostOptions& options, const std::shared_ptr<qt::QtUiHost>& host);

} // namespace steplets::desktop
