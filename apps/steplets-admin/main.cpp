// steplets-admin COMMAND [--dir D]: init, seed-demo, dump, check. Exit 0 on success, 1 when
// the data is at fault, 2 on wrong usage.
#include "AdminCommands.h"
#include "DemoData.h"
#include "backends/sqlcipher/Schema.h"
#include "platform/runtime/Failure.h"
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <cstdio>
#include <sys/stat.h>

using namespace steplets;

namespace {

int usageError(const QString& message)
{
    QTextStream(stderr) << "steplets-admin: " << message << "\nTry 'steplets-admin --help'.\n";
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    // What the program makes is the user's alone: files 0600, folders 0700.
    ::umask(077);
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("steplets-admin"));
    QCoreApplication::setApplicationVersion(QStringLiteral(STEPLETS_VERSION_TEXT));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Creates, seeds, dumps and checks the two Steplets databases.\n\n"
        "Commands:\n"
        "  init       create OVLocal.db and OVLink.db with their tables (never overwrites)\n"
        "  seed-demo  add demo templates, groups and contacts to empty databases\n"
        "  dump       print every table of both databases as JSON\n"
        "  check      check integrity and schema, and that every task tblTasks records is in\n"
        "             the task folders of <D>/vdir with its time-card properties"));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption dirOption(QStringLiteral("dir"),
                                       QStringLiteral("The databases' directory (default: $STEPLETS_HOME, else the per-user data directory)."),
                                       QStringLiteral("D"));
    parser.addOption(dirOption);
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("init, seed-demo, dump or check"));

    if (!parser.parse(QCoreApplication::arguments())) return usageError(parser.errorText());
    if (parser.isSet(QStringLiteral("help"))) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        return 0;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        std::printf("steplets-admin %s\n", STEPLETS_VERSION_TEXT);
        return 0;
    }
    const QStringList args = parser.positionalArguments();
    if (args.size() != 1) return usageError(QStringLiteral("exactly one command is needed"));
    const QString command = args.first();
    const QString dir = sqlcipher::dataDirectory(parser.value(dirOption));

    QTextStream out(stdout);
    try {
        if (command == QLatin1String("init")) demo::createDatabases(dir, out);
        else if (command == QLatin1String("seed-demo")) demo::seed(dir, out);
        else if (command == QLatin1String("dump")) admin::dump(dir, out);
        else if (command == QLatin1String("check")) return admin::check(dir, out) ? 0 : 1;
        else return usageError(QStringLiteral("unknown command '%1'").arg(command));
    } catch (const Failure& f) {
        out.flush();
        // The first line says what is wrong; what follows is for a log.
        QTextStream(stderr) << "steplets-admin: " << f.description().section(QLatin1Char('\n'), 0, 0) << '\n';
        return 1;
    }
    return 0;
}
