// Tasks made by the vdir backend, listed and changed by todoman, parsed by python3-icalendar;
// and a task made by todoman, read by the backend.
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
#include <functional>
#include <QStandardPaths>
#include <gtest/gtest.h>

using namespace steplets;

namespace {

struct ProgramRun {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

class TodomanInterop : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable(QStringLiteral("todoman")).isEmpty())
            GTEST_SKIP() << "todoman is not installed";
        QDir().mkpath(tmp.file(QStringLiteral("tasks")));
        QFile cfg(tmp.file(QStringLiteral("config.py")));
        ASSERT_TRUE(cfg.open(QIODevice::WriteOnly));
        cfg.write(QStringLiteral("path = \"%1/*\"\ndate_format = \"%Y-%m-%d\"\ntime_format = \"%H:%M\"\n"
                                 "default_list = \"tasks\"\ncache_path = \"%1/cache.sqlite3\"\n")
                      .arg(tmp.path()).toUtf8());
        cfg.close();
        vdir::VdirConfig config;
        config.root = tmp.path();
        ns = vdir::openVdirStore(config, nullptr)->GetNamespace(QStringLiteral("MAPI"));
    }

    ProgramRun run(const QString& program, const QStringList& args)
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("HOME"), tmp.path());          // nothing of the real user is touched
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), tmp.path());
        env.insert(QStringLiteral("XDG_CACHE_HOME"), tmp.path());
        p.setProcessEnvironment(env);
        p.start(program, args);
        p.waitForFinished(60000);
        return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, p.readAllStandardOutput(), p.readAllStandardError()};
    }

    ProgramRun todoman(QStringList args)
    {
        args.prepend(tmp.file(QStringLiteral("config.py")));
        args.prepend(QStringLiteral("--config"));
        return run(QStringLiteral("todoman"), args);
    }

    QJsonArray porcelainList()
    {
        const ProgramRun r = todoman({QStringLiteral("--porcelain"), QStringLiteral("list"), QStringLiteral("--sort"), QStringLiteral("summary")});
        EXPECT_EQ(r.exitCode, 0) << r.err.constData();
        return QJsonDocument::fromJson(r.out).array();
    }

    ol::Items& items()
    {
        folder = ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"));
        return folder->Items();
    }
    // A saved task of `subject` and `due`, with whatever else `more` sets before the save.
    QString makeTask(const QString& subject, const Date& due, const std::function<void(ol::TaskItem&)>& more = {})
    {
        auto task = items().Add();
        task->set(QStringLiteral("Subject"), Value(subject));
        task->set(QStringLiteral("DueDate"), Value(due));
        if (more) more(*task);
        task->Save();
        return task->EntryID();
    }

    test::TempDir tmp;
    std::shared_ptr<ol::NameSpace> ns;
    std::shared_ptr<ol::MAPIFolder> folder;
};

} // namespace

TEST_F(TodomanInterop, TodomanListsOurTasksWithTheirSubjectsAndDueDates)
{
    const Date due = Date::fromParts(2031, 6, 3, 14, 30);
    makeTask(QStringLiteral("Alpha: call Ada, re; filing"), due);
    makeTask(QStringLiteral("Beta without due date"), Date::noDate());
    makeTask(QStringLiteral("Gamma recurring"), Date::fromParts(2031, 7, 1, 9, 0), [](ol::TaskItem& rich) {
        rich.set(QStringLiteral("Importance"), Value(2));
        rich.set(QStringLiteral("ReminderSet"), Value(true));
        rich.set(QStringLiteral("ReminderTime"), Value(Date::fromParts(2031, 6, 30, 9, 0)));
        rich.GetRecurrencePattern()->set(QStringLiteral("Interval"), Value(2));
        rich.UserProperties().Add(QStringLiteral("Project"), ol::olText)->set(Value("Harbor, phase 2"));
    });

    QMap<QString, QJsonObject> bySummary;
    for (const QJsonValue& v : porcelainList())
        bySummary.insert(v.toObject()[QStringLiteral("summary")].toString(), v.toObject());
    ASSERT_EQ(bySummary.keys(), (QStringList{QStringLiteral("Alpha: call Ada, re; filing"),
                                             QStringLiteral("Beta without due date"), QStringLiteral("Gamma recurring")}));
    EXPECT_EQ(bySummary.first()[QStringLiteral("due")].toInteger(), due.toQDateTime().toSecsSinceEpoch());
    EXPECT_TRUE(bySummary[QStringLiteral("Beta without due date")][QStringLiteral("due")].isNull());
    const QJsonObject gamma = bySummary.last();
    EXPECT_EQ(gamma[QStringLiteral("due")].toInteger(), Date::fromParts(2031, 7, 1, 9, 0).toQDateTime().toSecsSinceEpoch());
    EXPECT_EQ(gamma[QStringLiteral("priority")].toInt(), 1);
}

TEST_F(TodomanInterop, EveryFileWeWriteParsesWithPythonIcalendar)
{
    for (int i = 0; i < 3; ++i)
        makeTask(QStringLiteral("Task %1").arg(i), Date::fromParts(2031, 1, 1 + i, 8, 0));
    makeTask(QString(), Date::noDate(), [](ol::TaskItem& task) {
        auto pattern = task.GetRecurrencePattern();
        for (const auto& [name, value] : {std::pair{"RecurrenceType", 6}, {"Instance", 5}, {"DayOfWeekMask", int(ol::olFriday)},
                                          {"MonthOfYear", 11}, {"Occurrences", 4}})
            pattern->set(QLatin1String(name), Value(value));
        task.set(QStringLiteral("Complete"), Value(true));
    });

    const QStringList files = QDir(tmp.file(QStringLiteral("tasks"))).entryList({QStringLiteral("*.ics")}, QDir::Files);
    ASSERT_EQ(files.size(), 4);
    QStringList args = {QStringLiteral("-c"), QStringLiteral(
        "import sys, icalendar\n"
        "for path in sys.argv[1:]:\n"
        "    cal = icalendar.Calendar.from_ical(open(path, 'rb').read())\n"
        "    todos = [c for c in cal.walk() if c.name == 'VTODO']\n"
        "    assert len(todos) == 1, path\n"
        "    assert todos[0].get('UID'), path\n"
        "    for prop in ('DUE', 'COMPLETED', 'RRULE'):\n"
        "        if prop in todos[0]: todos[0].decoded(prop)\n"
        "print('ok', len(sys.argv) - 1)\n")};
    for (const QString& f : files)
        args << tmp.file(QStringLiteral("tasks/") + f);
    const ProgramRun r = run(QStringLiteral("/usr/bin/python3"), args);
    EXPECT_EQ(r.exitCode, 0) << r.err.constData();
    EXPECT_EQ(r.out.trimmed(), QByteArray("ok 4"));
}

TEST_F(TodomanInterop, ChangesMadeByTodomanAreReadBack)
{
    const QString id = makeTask(QStringLiteral("Finish with todoman"), Date::fromParts(2031, 2, 2, 10, 0));
    const QJsonArray list = porcelainList();
    ASSERT_EQ(list.size(), 1);
    const ProgramRun done = todoman({QStringLiteral("done"), QString::number(list[0].toObject()[QStringLiteral("id")].toInt())});
    ASSERT_EQ(done.exitCode, 0) << done.err.constData();
    auto task = ns->GetItemFromID(id, QStringLiteral("store"));
    EXPECT_EQ(task->get(QStringLiteral("Complete")), Value(true));
    EXPECT_EQ(task->Subject(), QStringLiteral("Finish with todoman"));

    const ProgramRun made = todoman({QStringLiteral("new"), QStringLiteral("--list"), QStringLiteral("tasks"), QStringLiteral("--due"),
                              QStringLiteral("2031-03-04 16:15"), QStringLiteral("Made by todoman")});
    ASSERT_EQ(made.exitCode, 0) << made.err.constData();
    ASSERT_EQ(items().Count(), 2);
    QList<Value> dues;
    for (int i = 1; i <= items().Count(); ++i)
        if (items().Item(i)->Subject() == QLatin1String("Made by todoman")) dues << items().Item(i)->get(QStringLiteral("DueDate"));
    EXPECT_EQ(dues, QList<Value>{Value(Date::fromParts(2031, 3, 4, 16, 15))});
}
