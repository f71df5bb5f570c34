// bench-processing: what the processing engine itself costs per task, apart from its deliberate
// pause. A whole session runs on real stores (SQLCipher databases, a vdir whose writes are
// fsync'ed) with a scripted user on the virtual clock, so each task's 2.1 s pause takes no real
// time: a group of 1,000 templates with a time card is processed, and so is a group of one; the
// difference over 999 tasks is the engine's overhead per task (start-up and lists cancel out).
// Beside it, where todoman is installed, the cost of one `todoman new` for comparison.
// Prints "name: 1.2 ms (target <= 5 ms)" lines and exits 0 whatever the figures.
#include "Scenario.h"
#include "Workspace.h"
#include "backends/qsettings/IniSettings.h"
#include "backends/scripted/ScriptedHost.h"
#include "backends/sqlcipher/SqlCipherStore.h"
#include "backends/vdir/VdirStore.h"
#include "component/clsSteplets.h"
#include "platform/runtime/DateFormats.h"
#include "platform/ErrorReporter.h"
#include "session/SessionContext.h"
#include "BenchSupport.h"
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdio>

using namespace steplets;
using namespace steplets::bench;

namespace {

constexpr int kTasks = 1000;
constexpr int kTodomanRuns = 9;

// A report means the run did not go as planned; the figure is then not printed.
bool g_reported = false;
class NotingReporter : public ErrorReporter {
public:
    void Report(const QString&, const QString& description, const QString&, const QString&, const QString& location) override
    {
        g_reported = true;
        std::fprintf(stderr, "bench-processing: report: %s at %s\n", qPrintable(description), qPrintable(location.right(120)));
    }
};

// A session that processes a group of `n` relative templates with a time card and then closes.
QByteArray sessionOf(int n)
{
    QJsonArray templates, assignments;
    for (int i = 1; i <= n; ++i) {
        templates.append(QJsonObject{{"ID", i}, {"Subject", QStringLiteral("Bench task %1").arg(i)}, {"DateType", 1},
                                     {"DueDateOffset", 1440 + i}, {"ReminderOffset", 1380}, {"ReminderSet", true},
                                     {"Body", QStringLiteral("Step %1 of the bench run.").arg(i)}, {"Categories", "Bench"},
                                     {"FillIn1", "Subject field from template"}, {"FillIn2", "Current Date"},
                                     {"FillIn3", "[Empty]"}, {"FillIn4", "[Empty]"}, {"Tag", 0}});
        assignments.append(QJsonObject{{"GroupID", 1}, {"TaskID", i}});
    }
    const double pauses = 1.0 + 2.1 * n + 10.0;
    const QJsonObject s{
        {"host", QJsonObject{{"sUserName", "Bench User"}, {"lTimeCardID", 42}, {"sMainActivityTerm", "Activity"},
                             {"sSubActivityTerm", "Sub Activity"}, {"sMainActivity", "Audit"}, {"sSubActivity", "Fieldwork"}}},
        {"settings", QJsonObject{{"Task Selection", 1}}},
        {"store", QJsonObject{{"local", QJsonObject{{"tblSteplets", templates},
                                                     {"tblTaskGroups", QJsonArray{QJsonObject{{"ID", 1}, {"GroupName", "Bench"}}}},
                                                     {"tblGroupAssignments", assignments}}}}},
        {"script", QJsonArray{QJsonObject{{"form", "frmSteplet"}, {"click", "ProcessTasksButton"}},
                              QJsonObject{{"wait", pauses}},
                              QJsonObject{{"form", "frmProcessTasks"}, {"click", "cmdOK"}},
                              QJsonObject{{"form", "frmSteplet"}, {"close", true}}}}};
    return QJsonDocument(s).toJson(QJsonDocument::Compact);
}

// One session in a fresh directory: the stores are made untimed, the host's call is timed.
// A negative result means the session did not run to its end.
double timeSession(const scenario::Scenario& s)
{
    QTemporaryDir dir;
    const scenario::Workspace ws{dir.path()};
    scenario::setUp(s, ws);

    auto host = std::make_shared<scripted::ScriptedHost>(s.script, s.now.toQDateTime());
    vdir::VdirConfig config;
    config.root = ws.vdirRoot();
    config.storeId = s.outlook.storeID;
    config.version = s.outlook.version;
    scripted::ScriptedHost* h = host.get();
    config.clock = [h] { return h->Now(); };
    HostArguments args = s.host;
    args.olApp = vdir::openVdirStore(config, host);
    args.olNS = args.olApp->GetNamespace(QStringLiteral("MAPI"));
    Ports ports;
    ports.store = std::make_shared<sqlcipher::SqlCipherStore>();
    ports.settings = std::make_shared<IniSettings>(ws.configDir());
    ports.ui = host;
    ports.errorReporter = [] { return std::make_unique<NotingReporter>(); };
    ports.componentDirectory = ws.dir;

    QElapsedTimer t;
    t.start();
    bool ended = true;
    try {
        clsSteplets component(std::move(ports));
        args.callOn(component);
    } catch (...) {
        ended = false;
    }
    const double ms = t.nsecsElapsed() / 1e6;
    session().ports = Ports();
    const bool allMade = QDir(QDir(ws.vdirRoot()).filePath(s.host.sTaskFolderEID))
                             .entryList({QStringLiteral("*.ics")}, QDir::Files).size() > 0;
    return ended && !g_reported && h->script().atEnd() && allMade ? ms : -1.0;
}

double medianSession(const scenario::Scenario& s)
{
    std::vector<double> ms;
    for (int i = 0; i < 3; ++i) {
        const double one = timeSession(s);
        if (one < 0) return -1.0;
        ms.push_back(one);
    }
    return median(ms);
}

// One `todoman new` into a collection of its own, in milliseconds; negative when it failed.
double timeTodomanNew(const QString& program)
{
    QTemporaryDir dir;
    QDir().mkpath(QDir(dir.path()).filePath(QStringLiteral("tasks")));
    const QString cfgPath = QDir(dir.path()).filePath(QStringLiteral("config.py"));
    QFile cfg(cfgPath);
    if (!cfg.open(QIODevice::WriteOnly)) return -1.0;
    cfg.write(QStringLiteral("path = \"%1/*\"\ndate_format = \"%Y-%m-%d\"\ntime_format = \"%H:%M\"\n"
                             "default_list = \"tasks\"\ncache_path = \"%1/cache.sqlite3\"\n")
                  .arg(dir.path()).toUtf8());
    cfg.close();
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), dir.path());
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), dir.path());
    env.insert(QStringLiteral("XDG_CACHE_HOME"), dir.path());
    std::vector<double> ms;
    for (int i = 0; i < kTodomanRuns; ++i) {
        QProcess p;
        p.setProcessEnvironment(env);
        QElapsedTimer t;
        t.start();
        p.start(program, {QStringLiteral("--config"), cfgPath, QStringLiteral("new"), QStringLiteral("--list"),
                          QStringLiteral("tasks"), QStringLiteral("--due"), QStringLiteral("2026-03-18"),
                          QStringLiteral("Bench task %1").arg(i)});
        p.closeWriteChannel();
        if (!p.waitForFinished(60000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0) return -1.0;
        ms.push_back(t.nsecsElapsed() / 1e6);
    }
    return median(ms);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    DateFormats::setCurrent(std::make_shared<FixedEnglishFormats>());
    QString problem;
    const auto many = scenario::parseScenario(sessionOf(kTasks), &problem);
    const auto one = many ? scenario::parseScenario(sessionOf(1), &problem) : std::nullopt;
    if (!many || !one) {
        std::fprintf(stderr, "bench-processing: %s\n", qPrintable(problem));
        return 0;
    }
    // 1. The engine's overhead per task, the pause on the virtual clock.
    const double manyMs = medianSession(*many);
    const double oneMs = medianSession(*one);
    if (manyMs < 0 || oneMs < 0)
        std::printf("process 1,000 tasks with a time card, per task: not measured (the session did not end as planned)\n");
    else
        print("process 1,000 tasks with a time card, per task", (manyMs - oneMs) / (kTasks - 1), 5);
    // 2. The same step by another VTODO client, where one is installed.
    const QString todoman = QStandardPaths::findExecutable(QStringLiteral("todoman"));
    if (!todoman.isEmpty()) {
        const double ms = timeTodomanNew(todoman);
        if (ms >= 0) print("todoman new, per task (for comparison)", ms, 5);
    }
    return 0;
}
