// steplets-scenario: plays one scenario file in a fresh process.
#include "CommandLine.h"
#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    QStringList args = QCoreApplication::arguments();
    args.removeFirst();
    return steplets::scenario::runCommand(args, out, err);
}
