#include "Desktop.h"
#include "AdminCommands.h"
#include "QtUiHost.h"
#include "backends/qsettings/IniSettings.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/SqlCipherStore.h"
#include "backends/vdir/VdirStore.h"
#include "chooser/frmSteplet.h"
#include "platform/runtime/DateFormats.h"
#include "platform/runtime/Failure.h"
#include "session/SessionContext.h"
#include "session/modDLLErrHandler.h"
#include "HostAbort.h"
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QTextStream>

namespace steplets::desktop {

QString stateDirectory()
{
    QString base = qEnvironmentVariable("XDG_STATE_HOME");
    if (base.isEmpty()) base = QDir::homePath() + QStringLiteral("/.local/state");
    return QDir(base).filePath(QStringLiteral("steplets"));
}

QString logFilePath() { return QDir(stateDirectory()).filePath(QStringLiteral("steplets.log")); }

void appendToLog(const QString& line)
{
    QDir().mkpath(QFileInfo(logFilePath()).absolutePath());
    QFile log(logFilePath());
    if (log.open(QIODevice::Append | QIODevice::Text))
        QTextStream(&log) << QDateTime::currentDateTime().toString(Qt::ISODate) << "  " << line << '\n';
}

QStringList helpFolders() { return {QStringLiteral(STEPLETS_HELP_DIR), QStringLiteral(STEPLETS_SOURCE_HELP_DIR)}; }

bool ensureEmbeddedDefault(const QString& home)
{
    const bool local = QFile::exists(sqlcipher::fileOf(sqlcipher::Db::Local, home));
    const bool link = QFile::exists(sqlcipher::fileOf(sqlcipher::Db::Link, home));
    if (local || link) return false;
    QString said;
    QTextStream out(&said);
    admin::init(home, out);
    admin::seedDemo(home, out);
    return true;
}

void DesktopReporter::Report(const QString& version, const QString& description, const QString& number,
                             const QString& source, const QString& location)
{
    // 1. The log first: the report survives whatever the message box meets.
    QDir().mkpath(stateDirectory());
    QFile log(logFilePath());
    if (log.open(QIODevice::Append | QIODevice::Text)) {
        QTextStream(&log) << QDateTime::currentDateTime().toString(Qt::ISODate) << "  version " << version << "  failure "
                          << number << "  " << description << "  source " << source << "  at " << location << '\n';
    }
    // 2. Then the user.
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Steplets"),
                    QStringLiteral("%1\n\nFailure %2 in %3\n%4").arg(description, number, source, location),
                    QMessageBox::Ok, m_host.activeWindow());
    box.setObjectName(QStringLiteral("FailureReport"));
    box.setInformativeText(QStringLiteral("Version %1. Written to %2").arg(version, QDir::toNativeSeparators(logFilePath())));
    box.exec();
}

QString homeOf(const HostOptions& options) { return QDir::cleanPath(sqlcipher::dataDirectory(options.home)); }

std::shared_ptr<ol::Application> wirePorts(const HostOptions& options, const QString& home,
                                           const std::shared_ptr<qt::QtUiHost>& host)
{
    const bool chosen = !options.home.isEmpty() || !qEnvironmentVariable("STEPLETS_HOME").isEmpty();
    vdir::VdirConfig config;
    config.root = QDir(home).filePath(QStringLiteral("vdir"));
    config.storeId = options.args.sContactFolderSID.isEmpty() ? QStringLiteral("store") : options.args.sContactFolderSID;
    config.version = options.outlookVersion;
    QDir().mkpath(QDir(config.root).filePath(options.args.sTaskFolderEID.isEmpty() ? QStringLiteral("tasks") : options.args.sTaskFolderEID));

    DateFormats::setCurrent(std::make_shared<LocaleFormats>());
    Ports& ports = process().ports;
    ports.store = std::make_shared<sqlcipher::SqlCipherStore>();
    ports.settings = std::make_shared<IniSettings>(chosen ? QDir(home).filePath(QStringLiteral("config")) : QString());
    ports.ui = host;
    qt::QtUiHost* raw = host.get();
    ports.errorReporter = [raw] { return std::make_unique<DesktopReporter>(*raw); };
    ports.componentDirectory = home;
    return vdir::openVdirStore(config, host);
}

int runSession(const HostOptions& options, const std::shared_ptr<qt::QtUiHost>& host)
{
    // 1. The directory, with the embedded default on first start.
    const QString home = homeOf(options);
    try {
        ensureEmbeddedDefault(home);
    } catch (const Failure& f) {
        DesktopReporter(*host).Report(modDLLErrHandler::VersionText(), f.description(), QString::number(f.number()),
                                      f.source(), QStringLiteral("embedded default in ") + home);
        return 1;
    }
    // 2. The ports, then the host's call.
    HostArguments args = options.args;
    args.olApp = wirePorts(options, home, host);
    args.olNS = args.olApp->GetNamespace(QStringLiteral("MAPI"));
    int status = 0;
    try {
        qt::QtUiHost* raw = host.get();
        clsSteplets component([raw] { return makeChooserWindow(*raw); });
        args.callOn(component);
    } catch (const HostAbort& abort) {
        if (abort.reason() == HostAbort::Reason::CannotPlay) {
            // Only a played script stops this way: its player, not a user, wants to know why.
            QTextStream(stderr) << "steplets: " << abort.message() << "\n";
            process().ports = Ports();
            return 2;
        }
        // A failure no handler took: the window is gone, the user and the log are told.
        DesktopReporter(*host).Report(modDLLErrHandler::VersionText(), abort.message(), QStringLiteral("0"),
                                      QStringLiteral("steplets"), QStringLiteral("event handler"));
        status = 1;
    }
    process().ports = Ports();
    return status;
}

} // namespace steplets::desktop
