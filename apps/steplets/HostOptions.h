#pragma once
// The desktop program's command line: one option per argument of OpenSteplets (the two Outlook
// objects aside: the program makes them), the component's directory, and the usual --help and
// --version.
#include "component/clsSteplets.h"
#include <QString>
#include <QStringList>

namespace steplets::desktop {

struct HostOptions {
    HostArguments args;          // as the host will pass them
    QString home;                // the component's directory; empty: $STEPLETS_HOME, else the default
    QString outlookVersion = QStringLiteral("11.0.5510");
    QString playFile;            // a scenario file whose script plays the user (tests, demonstrations)
};

struct ParsedCommandLine {
    enum class Outcome { Run, Help, Version, Error };
    Outcome outcome = Outcome::Run;
    HostOptions options;
    QString text;                // the help text, or the error in one line
};

// The defaults describe the demo user on the embedded default's folders, in the mode for
// keeping templates (no time card).
HostOptions defaultHostOptions();
// `arguments` as main receives them, the program's name first.
ParsedCommandLine parseCommandLine(const QStringList& arguments);

} // namespace steplets::desktop
