#include "Desktop.h"
#include "DemoData.h"
#include "QtUiHost.h"
#include "backends/qsettings/IniSettings.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/SqlCipherStore.h"
#include "backends/vdir/VdirStore.h"
#include "chooser/frmSteplet.h"
#include "platform/runtime/DateFormats.h"
#include "platform/PrivateFiles.h"
#include "platform/runtime/Failure.h"
#include "session/SessionContext.h"
#include "session/modDLLErrHandler.h"
#include "HostAbort.h"
#include "MainWindow.h"
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QStandardPaths>
#include <QTextStream>

namespace steplets::desktop {

QString stateDirectory()
{
    QString base = qEnvironmentVariable("XDG_STATE_HOME");
    if (base.isEmpty()) base = QDir::homePath() + QStringLiteral("/.local/state");
    return QDir(base).filePath(QStringLiteral("steplets"));
}

namespace {
// Whether the user chose the data folder, rather than taking the per-user default.
bool homeChosen(const HostOptions& options)
{
    return !options.home.isEmpty() || !qEnvironmentVariable("STEPLETS_HOME").isEmpty();
}
} // namespace

QString logFilePath(const HostOptions& options)
{
    const QString folder = homeChosen(options) ? homeOf(options) : stateDirectory();
    return QDir(folder).filePath(QStringLiteral("steplets.log"));
}

void appendToLog(const QString& logFile, const QString& line)
{
    files::makePrivatePath(QFileInfo(logFile).absolutePath());
    QFile log(logFile);
    if (log.open(QIODevice::Append | QIODevice::Text, QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        QTextStream(&log) << QDateTime::currentDateTime().toString(Qt::ISODate) << "  " << line << '\n';
}

QStringList helpFolders() { return {QStringLiteral(STEPLETS_HELP_DIR), QStringLiteral(STEPLETS_SOURCE_HELP_DIR)}; }

bool ensureEmbeddedDefault(const QString& home)
{
    // The demo is made whole in a folder of its own, then moved in, the databases last: a first
    // start stopped half-way leaves no database behind, or finishes from a complete folder.
    const QString staging = QDir(home).filePath(QStringLiteral(".first-start"));
    const QString complete = QDir(staging).filePath(QStringLiteral("complete"));
    const QString local = sqlcipher::fileOf(sqlcipher::Db::Local, home);
    const QString link = sqlcipher::fileOf(sqlcipher::Db::Link, home);
    if ((QFile::exists(local) || QFile::exists(link)) && !QFile::exists(complete)) return false;
    auto failed = [](const QString& what, const QString& why) {
        return Failure(75, QStringLiteral("The demo data cannot be put in place: %1: %2.").arg(QDir::toNativeSeparators(what), why),
                       QStringLiteral("steplets"));
    };
    if (!QFile::exists(complete)) {
        QDir(staging).removeRecursively();
        QString said;
        QTextStream out(&said);
        demo::createDatabases(staging, out);
        demo::seed(staging, out);
        if (const QString why = files::writeDurably(complete, {}); !why.isEmpty()) throw failed(complete, why);
    }
    const QDir cards(QDir(staging).filePath(QStringLiteral("vdir/contacts")));
    const QString cardsHome = QDir(home).filePath(QStringLiteral("vdir/contacts"));
    if (!files::makePrivatePath(cardsHome)) throw failed(cardsHome, QStringLiteral("the folder cannot be made"));
    for (const QString& card : cards.entryList(QDir::Files))
        if (!QFile::exists(QDir(cardsHome).filePath(card))) files::renameDurably(cards.filePath(card), QDir(cardsHome).filePath(card), false);
    for (const QString& db : {link, local}) {
        if (QFile::exists(db)) continue;
        const QString from = QDir(staging).filePath(QFileInfo(db).fileName());
        if (const QString why = files::renameDurably(from, db, false); !why.isEmpty()) throw failed(db, why);
    }
    QDir(staging).removeRecursively();
    return true;
}

namespace {

// The parts of the program a user can mend by hand, by the source their failures carry.
enum class Part { Databases, TaskStore, Settings, Other };

Part partOf(const QString& source)
{
    if (source == QLatin1String("Microsoft JET Database Engine")) return Part::Databases;
    if (source == QLatin1String("Steplets task store")) return Part::TaskStore;
    if (source == QLatin1String("Settings")) return Part::Settings;
    return Part::Other;
}

} // namespace

FailureMessage failureMessage(const QString& version, const QString& description, const QString& number,
                              const QString& source, const QString& location, const QString& logFile, const QString& home)
{
    FailureMessage m;
    // The stores and the settings describe their failures as sentences naming the file; a bare
    // run-time text ("Overflow") is put into one. Only the first line is the user's; what
    // follows (an engine's own text) is for the log.
    const QString said = description.section(QLatin1Char('\n'), 0, 0).trimmed();
    const bool sentence = said.contains(QLatin1Char(' ')) && (said.endsWith(QLatin1Char('.')) || said.endsWith(QLatin1Char('!')));
    const Part part = partOf(source);
    if (part != Part::Other && !said.isEmpty()) m.what = sentence ? said : said + QLatin1Char('.');
    else m.what = sentence ? said
                           : QStringLiteral("Steplets stopped what it was doing because of an unexpected problem (%1).")
                                 .arg(said.isEmpty() ? QStringLiteral("failure ") + number : said);
    const QString folder = home.isEmpty() ? QStringLiteral("its data folder") : QDir::toNativeSeparators(home);
    switch (part) {
    case Part::Databases:
        m.advice = QStringLiteral("Steplets keeps its two databases, OVLocal.db and OVLink.db, in %1. Put a missing or "
                                  "damaged file back from a backup; or move both files out of that folder and start "
                                  "Steplets again, which then begins with new demonstration data.").arg(folder);
        break;
    case Part::TaskStore:
        m.advice = QStringLiteral("Your tasks and contacts are files in the folder %1. Make sure that it and its task "
                                  "and contact folders exist and that you may write to them, then try again.")
                       .arg(QDir::toNativeSeparators(QDir(home).filePath(QStringLiteral("vdir"))));
        break;
    case Part::Settings:
        m.advice = QStringLiteral("Your options are kept in the settings file named above. Make sure it is a file you "
                                  "may change, not a folder, or move it away to start again with the default options; "
                                  "then start Steplets again.");
        break;
    case Part::Other:
        m.advice = QStringLiteral("Close this message and carry on or start Steplets again: what was saved before stays saved.");
        break;
    }
    m.advice += QStringLiteral(" If it happens again, send the details, also kept in %1, to your support.")
                    .arg(QDir::toNativeSeparators(logFile));
    m.details = QStringLiteral("Failure %1 in %2, Steplets %3\nDescription: %4\nWhere:%5")
                    .arg(number, source, version, description, location);
    return m;
}

void DesktopReporter::Report(const QString& version, const QString& description, const QString& number,
                             const QString& source, const QString& location)
{
    if (m_reported) *m_reported = true;
    // The log first: the report survives whatever the message box meets.
    appendToLog(m_logFile, QStringLiteral("version %1  failure %2  %3  source %4  at %5")
                               .arg(version, number, description, source, QString(location).replace(QLatin1String("\r\n"), QLatin1String(" | "))));
    const FailureMessage m = failureMessage(version, description, number, source, location, m_logFile, m_home);
    if (m_host.driven()) {
        // A played session has nobody to read a box: the player's output says it instead.
        QTextStream(stderr) << "steplets: " << m.what << "\n";
        return;
    }
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Steplets"), m.what, QMessageBox::Ok, m_host.activeWindow());
    box.setObjectName(QStringLiteral("FailureReport"));
    box.setInformativeText(m.advice);
    box.setDetailedText(m.details);
    box.exec();
}

QString homeOf(const HostOptions& options) { return QDir::cleanPath(sqlcipher::dataDirectory(options.home)); }

QString configDirectory(const HostOptions& options, const QString& home)
{
    return homeChosen(options) ? QDir(home).filePath(QStringLiteral("config"))
                               : QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

std::shared_ptr<ol::Application> wirePorts(const HostOptions& options, const QString& home,
                                           const std::shared_ptr<qt::QtUiHost>& host, bool* reported, Ports& ports)
{
    vdir::VdirConfig config;
    config.root = QDir(home).filePath(QStringLiteral("vdir"));
    config.storeId = options.args.sContactFolderSID.isEmpty() ? QStringLiteral("store") : options.args.sContactFolderSID;
    config.version = options.outlookVersion;
    files::makePrivatePath(QDir(config.root).filePath(options.args.sTaskFolderEID.isEmpty() ? QStringLiteral("tasks") : options.args.sTaskFolderEID));

    DateFormats::setCurrent(std::make_shared<LocaleFormats>());
    ports.store = std::make_shared<sqlcipher::SqlCipherStore>();
    ports.settings = std::make_shared<IniSettings>(configDirectory(options, home));
    ports.ui = host;
    qt::QtUiHost* raw = host.get();
    ports.errorReporter = [raw, log = logFilePath(options), reported, home] {
        return std::make_unique<DesktopReporter>(*raw, log, reported, home);
    };
    ports.componentDirectory = home;
    return vdir::openVdirStore(config, host);
}

int runSession(const HostOptions& options, const std::shared_ptr<qt::QtUiHost>& host)
{
    bool reported = false;
    const QString log = logFilePath(options);
    auto report = [&](const QString& description, const QString& number, const QString& source, const QString& where) {
        DesktopReporter(*host, log, &reported, homeOf(options)).Report(modDLLErrHandler::VersionText(), description, number, source, where);
    };
    // The directory, with the embedded default on first start.
    const QString home = homeOf(options);
    try {
        ensureEmbeddedDefault(home);
    } catch (const Failure& f) {
        report(f.description(), QString::number(f.number()), f.source(), QStringLiteral("embedded default in ") + home);
        return 1;
    }
    // The ports, the desktop's own part of the main window, then the host's call.
    dressMainWindow(*host, options, home);
    HostArguments args = options.args;
    Ports ports;
    args.olApp = wirePorts(options, home, host, &reported, ports);
    args.olNS = args.olApp->GetNamespace(QStringLiteral("MAPI"));
    int status = 0;
    try {
        clsSteplets component(std::move(ports));
        args.callOn(component);
    } catch (const HostAbort& abort) {
        if (abort.reason() == HostAbort::Reason::CannotPlay) {
            // Only a played script stops this way: its player, not a user, wants to know why.
            QTextStream(stderr) << "steplets: " << abort.message() << "\n";
            status = 2;
        } else {
            // A failure no handler took: the window is gone, the user and the log are told.
            report(abort.message(), QStringLiteral("0"), QStringLiteral("steplets"), QStringLiteral("event handler"));
        }
    }
    // The session's objects go while the application is still there (the task store holds the
    // host, whose widgets cannot outlive it); the trail stays, as for any later session.
    const QString trail = session().ErrorTrail;
    session() = SessionContext();
    session().ErrorTrail = trail;
    return status != 0 ? status : reported ? 1 : 0;
}

} // namespace steplets::desktop
