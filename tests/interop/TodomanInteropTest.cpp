// Tasks made by the vdir backend, read by todoman (through python3-icalendar), listed and changed
// by it; and a task made by todoman, read by the backend.
#include "TempDir.h"
#include "backends/vdir/VdirStore.h"
#include "platform/OutlookGateway.h"
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>

using namespace steplets;

namespace {

struct ProgramRun {
    int exitCode = -1;
    QByteArray out, err;
};

TEST(TodomanInterop, OurTasksParseAndListWithTheirDatesAndWhatTodomanDoesIsReadBack)
{
    if (QStandardPaths::findExecutable(QStringLiteral("todoman")).isEmpty()) GTEST_SKIP() << "todoman is not installed";
    test::TempDir tmp;
    QDir().mkpath(tmp.file(QStringLiteral("tasks")));
    QFile cfg(tmp.file(QStringLiteral("config.py")));
    ASSERT_TRUE(cfg.open(QIODevice::WriteOnly));
    cfg.write(QStringLiteral("path = \"%1/*\"\ndate_format = \"%Y-%m-%d\"\ntime_format = \"%H:%M\"\n"
                             "default_list = \"tasks\"\ncache_path = \"%1/cache.sqlite3\"\n").arg(tmp.path()).toUtf8());
    cfg.close();
    auto todoman = [&](const QStringList& args) {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char* var : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) env.insert(QLatin1String(var), tmp.path());   // nothing of the real user's
        p.setProcessEnvironment(env);
        p.start(QStringLiteral("todoman"), QStringList{"--config", cfg.fileName()} + args);
        p.waitForFinished(60000);
        return ProgramRun{p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, p.readAllStandardOutput(), p.readAllStandardError()};
    };
    vdir::VdirConfig config;
    config.root = tmp.path();
    auto ns = vdir::openVdirStore(config, nullptr)->GetNamespace(QStringLiteral("MAPI"));
    auto folder = ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"));
    auto makeTask = [&](const QString& subject, const Date& due, const std::function<void(ol::TaskItem&)>& more) {
        auto task = folder->Items().Add();
        task->set(QStringLiteral("Subject"), Value(subject));
        task->set(QStringLiteral("DueDate"), Value(due));
        if (more) more(*task);
        task->Save();
        return task->EntryID();
    };
    const Date due = Date::fromParts(2031, 6, 3, 14, 30);
    const QString alpha = makeTask(QStringLiteral("Alpha: call Ada, re; filing"), due, {});
    makeTask(QStringLiteral("Beta without due date"), Date::noDate(), [](ol::TaskItem& rich) {
        rich.set(QStringLiteral("Importance"), Value(2));
        rich.set(QStringLiteral("ReminderSet"), Value(true));
        rich.set(QStringLiteral("ReminderTime"), Value(Date::fromParts(2031, 6, 30, 9, 0)));
        rich.GetRecurrencePattern()->set(QStringLiteral("Interval"), Value(2));
        rich.UserProperties().Add(QStringLiteral("Project"), ol::olText)->set(Value("Harbor, phase 2"));
    });
    makeTask(QString(), Date::noDate(), [](ol::TaskItem& task) {
        auto pattern = task.GetRecurrencePattern();
        for (const auto& [name, value] : {std::pair{"RecurrenceType", 6}, {"Instance", 5}, {"DayOfWeekMask", int(ol::olFriday)},
                                          {"MonthOfYear", 11}, {"Occurrences", 4}})
            pattern->set(QLatin1String(name), Value(value));
        task.set(QStringLiteral("Complete"), Value(true));
    });

    // Todoman reads every file, done or not, and lists it.
    const ProgramRun listed = todoman({"--porcelain", "list", "--status", "ANY", "--sort", "summary"});
    ASSERT_EQ(listed.exitCode, 0) << listed.err.constData();
    QMap<QString, QJsonObject> bySummary;
    for (const QJsonValue& v : QJsonDocument::fromJson(listed.out).array()) bySummary.insert(v.toObject()["summary"].toString(), v.toObject());
    ASSERT_EQ(bySummary.keys(), (QStringList{"", "Alpha: call Ada, re; filing", "Beta without due date"})) << listed.out.constData();
    const QJsonObject a = bySummary.value("Alpha: call Ada, re; filing"), b = bySummary.value("Beta without due date");
    EXPECT_EQ(a["due"].toInteger(), due.toQDateTime().toSecsSinceEpoch());
    EXPECT_TRUE(b["due"].isNull());
    EXPECT_EQ(b["priority"].toInt(), 1);
    EXPECT_FALSE(bySummary.first()["completed_at"].isNull()) << "the recurring task made complete";

    const ProgramRun done = todoman({"done", QString::number(a["id"].toInt())});
    ASSERT_EQ(done.exitCode, 0) << done.err.constData();
    auto task = ns->GetItemFromID(alpha, QStringLiteral("store"));
    EXPECT_EQ(task->get(QStringLiteral("Complete")), Value(true));
    EXPECT_EQ(task->Subject(), QStringLiteral("Alpha: call Ada, re; filing"));
    const ProgramRun made = todoman({"new", "--list", "tasks", "--due", "2031-03-04 16:15", "Made by todoman"});
    ASSERT_EQ(made.exitCode, 0) << made.err.constData();
    QList<Value> dues;
    folder = ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"));   // as it is now
    for (int i = 1; i <= folder->Items().Count(); ++i)
        if (folder->Items().Item(i)->Subject() == QLatin1String("Made by todoman")) dues << folder->Items().Item(i)->get(QStringLiteral("DueDate"));
    EXPECT_EQ(dues, QList<Value>{Value(Date::fromParts(2031, 3, 4, 16, 15))});
}

} // namespace
