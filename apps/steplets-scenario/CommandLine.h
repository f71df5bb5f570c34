#pragma once
// The player's command line: FILE.json [--out TRANSCRIPT.json] [--keep DIR], --help, --version.
#include <QStringList>
#include <QTextStream>

namespace steplets::scenario {

// Whether the arguments ask for the Qt host, which needs a QApplication made before the command
// runs.
bool wantsQtHost(const QStringList& args);
// Runs the command (arguments without the program's name); returns the exit status. The
// transcript goes to `out` unless --out names a file; problems go to `err`, one line each,
// naming the file.
int runCommand(const QStringList& args, QTextStream& out, QTextStream& err);

} // namespace steplets::scenario
