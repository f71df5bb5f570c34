// steplets-admin as a person runs it: init, check, seed-demo, dump, and its errors.
#include "TempDir.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/StoreData.h"
#include "backends/vdir/TaskCalendar.h"
#include "backends/vdir/VdirFiles.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <gtest/gtest.h>

namespace steplets::test {
namespace {

struct Outcome {
    int exitCode = -1;
    QString out;
    QString err;
};

class AdminTool : public ::testing::Test {
protected:
    Outcome admin(const QStringList& args, const QString& home = {})
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("STEPLETS_HOME"));
        if (!home.isEmpty()) env.insert(QStringLiteral("STEPLETS_HOME"), home);
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(STEPLETS_ADMIN_PATH), args);
        EXPECT_TRUE(p.waitForFinished(60000));
        return Outcome{p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
    }

    QStringList inDir(const char* command, const QString& where = {})
    {
        return {QString::fromLatin1(command), QStringLiteral("--dir"), where.isEmpty() ? dir.path() : where};
    }
    // Every file of a directory with its size and time, to see that nothing changed.
    static QStringList listing(const QString& where)
    {
        QStringList out;
        for (const QFileInfo& f : QDir(where).entryInfoList(QDir::Files | QDir::Hidden, QDir::Name))
            out << QStringLiteral("%1 %2 %3").arg(f.fileName()).arg(f.size()).arg(f.lastModified().toMSecsSinceEpoch());
        return out;
    }

    TempDir dir;
};

// A whole life in the directory STEPLETS_HOME names: init, check and dump empty, seed-demo once,
// and a second init that refuses and keeps the data.
TEST_F(AdminTool, InitSeedAndCheckInTheHomeDirectoryEachOnce)
{
    const auto run = [&](const char* command) { return admin({QString::fromLatin1(command)}, dir.path()); };
    const Outcome init = run("init");
    ASSERT_EQ(init.exitCode, 0) << init.err.toStdString();
    EXPECT_EQ(run("check").exitCode, 0);
    ASSERT_EQ(run("seed-demo").exitCode, 0);
    const QJsonObject store = QJsonDocument::fromJson(run("dump").out.toUtf8()).object();
    const QJsonArray contacts = store.value("link").toObject().value("tblContacts").toArray();
    ASSERT_GE(contacts.size(), 12);
    for (const QJsonValue& c : contacts) {
        const QString entryId = c.toObject().value(QStringLiteral("ContactEntryID")).toString();
        EXPECT_TRUE(QFile::exists(dir.file(QStringLiteral("vdir/contacts/") + entryId + QStringLiteral(".vcf")))) << entryId.toStdString();
    }
    EXPECT_EQ(store.value("local").toObject().value("tblTaskGroups").toArray().size(), 2);
    EXPECT_EQ(run("check").exitCode, 0);
    EXPECT_EQ(run("seed-demo").exitCode, 1) << "demo data is added once";

    const QStringList before = listing(dir.path());
    const Outcome again = run("init");
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_TRUE(again.err.contains(QStringLiteral("already exists")));
    EXPECT_EQ(again.err.count(QLatin1Char('\n')), 1) << "one line";
    EXPECT_EQ(listing(dir.path()), before) << "dump, check and a refused init change nothing";
}

// A local database that is missing, empty or someone else's: check and dump refuse it in one
// line naming the file, and write nothing into it.
TEST_F(AdminTool, ABrokenLocalDatabaseIsRefusedInOneLineNamingIt)
{
    const QString local = dir.file(QStringLiteral("OVLocal.db"));
    const std::pair<std::function<void()>, QString> cases[] = {
        {[] {}, local + QStringLiteral(" was not found")},
        {[&] {
             ASSERT_EQ(admin(inDir("init")).exitCode, 0);
             QFile::remove(local);   // the link database where the local one belongs
             ASSERT_TRUE(QFile::copy(dir.file(QStringLiteral("OVLink.db")), local));
         }, QStringLiteral("steplets-admin: Not a valid password")},
        {[&] { QFile f(local); ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate)); }, local + QStringLiteral(" is empty")},
    };
    for (const auto& [leave, says] : cases) {
        leave();
        const QStringList before = listing(dir.path());
        for (const char* command : {"check", "dump"}) {
            const Outcome r = admin(inDir(command));
            EXPECT_EQ(r.exitCode, 1) << command;
            EXPECT_TRUE(r.err.contains(says) && r.err.contains(local)) << r.err.toStdString();
            EXPECT_EQ(r.err.count(QLatin1Char('\n')), 1);
        }
        EXPECT_EQ(listing(dir.path()), before);
    }
}

// What an init stopped half-way leaves, the next init finishes (a kill at random moments is the
// fault tests' KilledInit).
TEST_F(AdminTool, InitFinishesWhatAnInterruptedOneLeft)
{
    struct Case { const char* what; std::function<void(const QString&)> leave; int templates; };
    const Case cases[] = {
        {"an empty OVLocal.db", [](const QString& d) { QFile f(d + "/OVLocal.db"); f.open(QIODevice::WriteOnly); }, 0},
        {"a whole OVLocal.db and no OVLink.db",
         [&](const QString& d) {
             ASSERT_EQ(admin(inDir("init", d)).exitCode, 0);
             ASSERT_EQ(admin(inDir("seed-demo", d)).exitCode, 0);
             ASSERT_TRUE(QFile::remove(d + "/OVLink.db"));
         }, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TempDir here;
        c.leave(here.path());
        const Outcome init = admin(inDir("init", here.path()));
        EXPECT_EQ(init.exitCode, 0) << init.err.toStdString();
        const Outcome check = admin(inDir("check", here.path()));
        EXPECT_EQ(check.exitCode, 0) << check.out.toStdString() << check.err.toStdString();
        const QJsonObject store = QJsonDocument::fromJson(admin(inDir("dump", here.path())).out.toUtf8()).object();
        EXPECT_GE(store.value("local").toObject().value("tblSteplets").toArray().size(), c.templates) << "the data stays";
        EXPECT_EQ(QDir(here.path()).entryList(QDir::Files | QDir::Hidden), (QStringList{"OVLink.db", "OVLocal.db"}));
    }
}

TEST_F(AdminTool, CheckNamesTheRecordedTasksThatAreMissingOrLackTheirTimeCardProperties)
{
    ASSERT_EQ(admin(inDir("init")).exitCode, 0);
    QDir().mkpath(dir.file(QStringLiteral("vdir/tasks")));
    for (const char* id : {"whole", "half"}) {
        vdir::TaskData t;
        t.uid = QLatin1String(id);
        t.Subject = QStringLiteral("Task %1").arg(QLatin1String(id));
        if (t.uid == QLatin1String("whole"))
            t.userProperties << vdir::UserPropertyData{QStringLiteral("OrdivaneID"), 1, false, Value(QStringLiteral("whole"))};
        vdir::writeFileAtomically(dir.file(QStringLiteral("vdir/tasks/%1.ics").arg(QLatin1String(id))), vdir::writeTaskCalendar(t));
    }
    sqlcipher::loadStore(dir.path(), QJsonDocument::fromJson(R"({"link": {"tblTasks": [
        {"EntryID": "whole", "TimeCardID": 7}, {"EntryID": "half", "TimeCardID": 7}, {"EntryID": "gone", "TimeCardID": 7}]}})").object());
    const Outcome check = admin(inDir("check"));
    EXPECT_EQ(check.exitCode, 1);
    const QStringList lines = check.out.trimmed().split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 2) << check.out.toStdString();
    EXPECT_TRUE(lines[0].contains(QStringLiteral("the task half of time card 7 lacks its time-card properties"))) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].contains(QStringLiteral("the task gone of time card 7 is missing"))) << lines[1].toStdString();
}

} // namespace
} // namespace steplets::test
