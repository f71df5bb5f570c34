#include "Player.h"
#include "Matcher.h"
#include "Transcript.h"
#include "Workspace.h"
#include "backends/qsettings/IniSettings.h"
#include "QtScriptDriver.h"
#include "QtUiHost.h"
#include "backends/scripted/ScriptedHost.h"
#include "backends/sqlcipher/SqlCipherStore.h"
#include "backends/vdir/VdirStore.h"
#include "platform/runtime/DateFormats.h"
#include "session/SessionContext.h"
#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace steplets::scenario {

namespace {

// The reporting object of the support library: each report it receives becomes an event.
class RecordingReporter : public ErrorReporter {
public:
    explicit RecordingReporter(scripted::EventLog& log) : m_log(log) {}
    void Report(const QString& version, const QString& description, const QString& number, const QString& source,
                const QString& location) override
    {
        m_log.record(QStringLiteral("report"), QJsonObject{{QStringLiteral("version"), version},
                                                            {QStringLiteral("description"), description},
                                                            {QStringLiteral("number"), number},
                                                            {QStringLiteral("source"), source},
                                                            {QStringLiteral("location"), location}});
    }

private:
    scripted::EventLog& m_log;
};

// Names for items first saved in the session, in order, avoiding the scenario's own and any
// item a kept directory already holds.
class CreatedItems {
public:
    CreatedItems(QSet<QString> taken, QString vdirRoot) : m_taken(std::move(taken)), m_root(std::move(vdirRoot)) {}
    QString next()
    {
        QString id;
        do id = QStringLiteral("new-%1").arg(++m_count, 4, 10, QLatin1Char('0'));
        while (m_taken.contains(id) || existsInVdir(id));
        m_names << id;
        return id;
    }
    const QStringList& names() const { return m_names; }
    int count() const { return m_count; }

private:
    bool existsInVdir(const QString& id) const
    {
        for (const QString& collection : QDir(m_root).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            for (const char* extension : {".ics", ".vcf"})
                if (QFileInfo::exists(QDir(m_root).filePath(collection + QLatin1Char('/') + id + QLatin1String(extension)))) return true;
        return false;
    }
    QSet<QString> m_taken;
    QString m_root;
    QStringList m_names;
    int m_count = 0;
};

QStringList entryIdsOf(const QList<QJsonObject>& items)
{
    QStringList ids;
    for (const QJsonObject& i : items) ids << i.value(QStringLiteral("EntryID")).toString();
    return ids;
}

// Where the task collection waits while it is gone from the vdir.
QString goneFolder(const QString& folder) { return folder + QStringLiteral(".gone"); }

// The composition root of a played session: every port on a real backend in the workspace, the
// windows on the chosen host, the script and the clock with it.
struct Wiring {
    std::shared_ptr<UiHost> host;
    scripted::Script* script = nullptr;
    scripted::EventLog* log = nullptr;
    // The Qt host's own: the scripted host keeps its script, clock and log itself.
    std::optional<scripted::Script> qtScript;
    std::shared_ptr<scripted::VirtualClock> qtClock;
    std::unique_ptr<scripted::EventLog> qtLog;
    std::unique_ptr<qtplay::QtScriptDriver> qtDriver;
    std::shared_ptr<CreatedItems> created;
    std::shared_ptr<ol::Application> app;
    Ports ports;
};

void wireHost(Wiring& w, const Scenario& s, Host on)
{
    if (on == Host::Scripted) {
        auto host = std::make_shared<scripted::ScriptedHost>(s.script, s.now.toQDateTime());
        w.script = const_cast<scripted::Script*>(&host->script());
        w.log = &host->log();
        w.host = host;
        return;
    }
    w.qtScript = s.script;
    w.qtClock = std::make_shared<scripted::VirtualClock>(s.now.toQDateTime());
    w.qtLog = std::make_unique<scripted::EventLog>(*w.qtClock);
    auto host = std::make_shared<qt::QtUiHost>(w.qtClock);
    w.qtDriver = std::make_unique<qtplay::QtScriptDriver>(*w.qtScript, *w.qtClock, *w.qtLog, *host);
    host->setDriver(w.qtDriver.get());
    w.script = &*w.qtScript;
    w.log = w.qtLog.get();
    w.host = host;
}

// The settings as the component reads and writes them, until the key has been opened `after`
// times: from then on the file is a folder, which stops a write of root too.
class SettingsUnwritableAfter : public SettingsGateway {
public:
    SettingsUnwritableAfter(std::shared_ptr<SettingsGateway> inner, QString file, int after)
        : m_inner(std::move(inner)), m_file(std::move(file)), m_after(after) {}
    std::shared_ptr<SettingsKey> OpenKey(const QString& rootPath, const QString& keyName) override
    {
        if (m_opened++ == m_after) {
            QDir().rename(m_file, m_file + kAside);
            QDir().mkpath(m_file);
        }
        return m_inner->OpenKey(rootPath, keyName);
    }
    long ReadNumber(SettingsKey& key, const QString& name, long dflt) override { return m_inner->ReadNumber(key, name, dflt); }
    QString ReadText(SettingsKey& key, const QString& name, const QString& dflt) override { return m_inner->ReadText(key, name, dflt); }
    void WriteNumber(SettingsKey& key, const QString& name, long value) override { m_inner->WriteNumber(key, name, value); }
    void WriteText(SettingsKey& key, const QString& name, const QString& value) override { m_inner->WriteText(key, name, value); }
    // The file as it was, for the transcript.
    static void putBack(const QString& file)
    {
        if (!QFileInfo::exists(file + kAside)) return;
        QDir(file).removeRecursively();
        QDir().rename(file + kAside, file);
    }

private:
    static constexpr const char* kAside = ".aside";
    std::shared_ptr<SettingsGateway> m_inner;
    QString m_file;
    int m_after;
    int m_opened = 0;
};

Wiring wire(const Scenario& s, const Workspace& ws, const ItemOrder& order, Host on, const PlayHooks& hooks)
{
    Wiring w;
    wireHost(w, s, on);
    QSet<QString> taken(order.givenTasks.begin(), order.givenTasks.end());
    for (const QString& id : order.givenContacts) taken.insert(id);
    w.created = std::make_shared<CreatedItems>(taken, ws.vdirRoot());

    vdir::VdirConfig config;
    config.root = ws.vdirRoot();
    config.storeId = s.outlook.storeID;
    config.version = s.outlook.version;
    UiHost* host = w.host.get();
    config.clock = [host] { return host->Now(); };
    const std::optional<qint32> goneAfter = s.outlook.taskFolderGoneAfter;
    const QString folder = QDir(ws.vdirRoot()).filePath(s.host.sTaskFolderEID);
    config.entryIds = [created = w.created, goneAfter, folder, before = hooks.beforeFirstSave] {
        if (before) before(created->count());
        if (goneAfter && created->count() == *goneAfter) QDir().rename(folder, goneFolder(folder));
        return created->next();
    };
    w.app = vdir::openVdirStore(config, w.host);

    DateFormats::setCurrent(std::make_shared<FixedEnglishFormats>());
    Ports& ports = w.ports;
    ports.store = std::make_shared<sqlcipher::SqlCipherStore>();
    ports.settings = std::make_shared<IniSettings>(ws.configDir());
    if (s.settingsUnwritableAfter)
        ports.settings = std::make_shared<SettingsUnwritableAfter>(ports.settings, ws.settingsFile(), *s.settingsUnwritableAfter);
    ports.ui = w.host;
    ports.errorReporter = [log = w.log] { return std::make_unique<RecordingReporter>(*log); };
    ports.componentDirectory = ws.dir;
    return w;
}

// The host's call; what ended it, as an exit status and a sentence (empty when it returned).
std::pair<int, QString> callHost(const Scenario& s, Wiring& w)
{
    try {
        HostArguments args = s.host;
        args.olApp = w.app;
        args.olNS = w.app->GetNamespace(QStringLiteral("MAPI"));
        clsSteplets component(w.ports);
        args.callOn(component);
    } catch (const HostAbort& abort) {
        if (abort.reason() == HostAbort::Reason::CannotPlay) return {CannotPlay, abort.message()};
        return {ComponentFailed, QStringLiteral("the component failed: ") + abort.message()};
    } catch (const Failure& f) {
        return {ComponentFailed, QStringLiteral("the component failed: failure %1 \"%2\" (%3) left OpenSteplets")
                                     .arg(f.number()).arg(f.description(), f.source())};
    } catch (const std::exception& e) {
        return {ComponentFailed, QStringLiteral("the component failed: %1 left OpenSteplets").arg(QString::fromUtf8(e.what()))};
    }
    if (!w.script->atEnd())
        return {CannotPlay, QStringLiteral("%1 cannot be done: the session ended before it")
                                .arg(w.script->peek().describe())};
    return {Passed, {}};
}

} // namespace

PlayResult play(const Scenario& scenario, const QString& dir, Host on, const PlayHooks& hooks)
{
    PlayResult result;
    // The stores as the scenario has them.
    const Workspace ws{QDir::cleanPath(QDir(dir).absolutePath())};
    try {
        setUp(scenario, ws);
    } catch (const SetupProblem& p) {
        return PlayResult{CannotPlay, p.message, std::nullopt};
    }
    if (hooks.afterSetUp) hooks.afterSetUp(ws.dir);
    // The ports, then the host's call.
    const ItemOrder order{entryIdsOf(scenario.outlook.tasks), entryIdsOf(scenario.outlook.contacts), {}};
    Wiring w = wire(scenario, ws, order, on, hooks);
    const auto [exit, why] = callHost(scenario, w);
    if (scenario.outlook.taskFolderGoneAfter) {
        const QString folder = QDir(ws.vdirRoot()).filePath(scenario.host.sTaskFolderEID);
        if (QDir(goneFolder(folder)).exists() && !QDir(folder).exists()) QDir().rename(goneFolder(folder), folder);
    }
    if (scenario.settingsUnwritableAfter) SettingsUnwritableAfter::putBack(ws.settingsFile());
    // The transcript, read back from the files.
    TranscriptParts parts;
    if (exit != Passed) parts.status = why;
    parts.events = w.log->events();
    parts.errorTrail = session().ErrorTrail;
    ItemOrder listed = order;
    listed.created = w.created->names();
    result.transcript = transcript(parts, ws, listed);
    result.exit = exit;
    result.problem = why;
    // The expectations, only for a session that was played to its end.
    if (exit == Passed && scenario.expect) {
        const QString mismatch = firstMismatch(*scenario.expect, *result.transcript);
        if (!mismatch.isEmpty()) {
            result.exit = ExpectationFailed;
            result.problem = QStringLiteral("expectation not met: ") + mismatch;
        }
    }
    // The host lets go of what it handed the component; the store's objects hold the windows' host.
    session().olApp.reset();
    session().olNS.reset();
    session().ports = Ports();
    w.ports = Ports();
    if (w.qtDriver) w.qtDriver.reset();
    return result;
}

} // namespace steplets::scenario
