// steplets-scenario: plays one scenario file in a fresh process.
#include "CommandLine.h"
#include <QApplication>
#include <QCoreApplication>
#include <memory>
#include <sys/stat.h>

int main(int argc, char** argv)
{
    // What the program makes is the user's alone: files 0600, folders 0700.
    ::umask(077);
    QStringList args;
    for (int i = 1; i < argc; ++i) args << QString::fromLocal8Bit(argv[i]);
    // The Qt host draws real widgets (offscreen unless a platform is named).
    std::unique_ptr<QCoreApplication> app;
    if (steplets::scenario::wantsQtHost(args)) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QApplication>(argc, argv);
        QApplication::setQuitOnLastWindowClosed(false);
    } else {
        app = std::make_unique<QCoreApplication>(argc, argv);
    }
    QTextStream out(stdout);
    QTextStream err(stderr);
    return steplets::scenario::runCommand(args, out, err);
}
