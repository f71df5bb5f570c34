// steplets [OPTIONS]: the desktop program. It plays the time-and-billing host: its options are
// the arguments of OpenSteplets, and it opens the chooser on the component's directory, creating
// the embedded demo data on first start. Exit 0 when the session ended, 1 when a failure was
// reported to the user, 2 on wrong usage.
#include "Desktop.h"
#include "Playback.h"
#include "QtUiHost.h"
#include <QApplication>
#include <QTextStream>
#include <cstdio>
#include <sys/stat.h>

using namespace steplets;

int main(int argc, char** argv)
{
    // What the program makes is the user's alone: files 0600, folders 0700.
    ::umask(077);
    // The command line is read before any window system is opened, so --help works anywhere.
    QStringList arguments;
    for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
    const desktop::ParsedCommandLine parsed = desktop::parseCommandLine(arguments);
    switch (parsed.outcome) {
    case desktop::ParsedCommandLine::Outcome::Help:
        std::fputs(qPrintable(parsed.text), stdout);
        return 0;
    case desktop::ParsedCommandLine::Outcome::Version:
        std::printf("steplets %s\n", STEPLETS_VERSION_TEXT);
        return 0;
    case desktop::ParsedCommandLine::Outcome::Error:
        QTextStream(stderr) << "steplets: " << parsed.text << "\nTry 'steplets --help'.\n";
        return 2;
    case desktop::ParsedCommandLine::Outcome::Run:
        break;
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("steplets"));
    QApplication::setApplicationVersion(QStringLiteral(STEPLETS_VERSION_TEXT));
    // The session ends when OpenSteplets returns, not when a window closes.
    QApplication::setQuitOnLastWindowClosed(false);
    std::unique_ptr<desktop::Playback> playback;
    if (!parsed.options.playFile.isEmpty()) {
        QString problem;
        playback = desktop::Playback::load(parsed.options.playFile, &problem);
        if (!playback) {
            QTextStream(stderr) << "steplets: " << problem << "\n";
            return 2;
        }
    }
    auto host = std::make_shared<qt::QtUiHost>(playback ? playback->clock() : nullptr);
    if (playback) playback->attach(*host);
    host->setHelp(desktop::helpFolders(),
                  [log = desktop::logFilePath(parsed.options)](const QString& line) { desktop::appendToLog(log, line); });
    const int status = desktop::runSession(parsed.options, host);
    if (playback && status == 0 && !playback->leftOver().isEmpty()) {
        QTextStream(stderr) << "steplets: " << playback->leftOver() << "\n";
        return 2;
    }
    return status;
}
