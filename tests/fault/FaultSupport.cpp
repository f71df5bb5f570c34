#include "FaultSupport.h"
#include "AdminCommands.h"
#include "backends/vdir/TaskCalendar.h"
#include "backends/vdir/VdirFiles.h"
#include "platform/PrivateFiles.h"
#include "platform/runtime/Failure.h"
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <cerrno>
#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace steplets::test {

bool enterPrivateMounts()
{
    static const bool entered = ::unshare(CLONE_NEWNS) == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    return entered;
}

bool mountTmpfs(const QString& at, qint64 bytes)
{
    const QByteArray options = "size=" + QByteArray::number(bytes) + ",mode=0700";
    return ::mount("tmpfs", QFile::encodeName(at).constData(), "tmpfs", 0, options.constData()) == 0;
}

bool mountReadOnly(const QString& path)
{
    const QByteArray p = QFile::encodeName(path);
    return ::mount(p.constData(), p.constData(), nullptr, MS_BIND, nullptr) == 0
           && ::mount(nullptr, p.constData(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

void fillDisk(const QString& dir, qint64 leave)
{
    QFile filler(QDir(dir).filePath(QStringLiteral("filler")));
    if (!filler.open(QIODevice::WriteOnly | QIODevice::Append)) return;
    const QByteArray block(64 * 1024, 'f');
    for (;;) {
        struct statvfs fs;
        if (::statvfs(QFile::encodeName(dir).constData(), &fs) != 0) return;
        const qint64 free = static_cast<qint64>(fs.f_bavail) * static_cast<qint64>(fs.f_frsize) - leave;
        if (free <= 0) return;
        const qint64 chunk = std::min<qint64>(block.size(), std::max<qint64>(free, 4096));
        if (filler.write(block.constData(), chunk) != chunk || !filler.flush()) return;
    }
}

QJsonObject processingSession(int templates)
{
    QJsonArray rows, assignments;
    for (int i = 1; i <= templates; ++i) {
        rows.append(QJsonObject{{"ID", i}, {"Subject", QStringLiteral("Task %1").arg(i)}, {"DateType", 1}, {"DueDateOffset", 1440 + i},
                                {"ReminderOffset", 0}, {"ReminderSet", false}, {"FillIn1", "Subject field from template"},
                                {"FillIn2", "[Empty]"}, {"FillIn3", "[Empty]"}, {"FillIn4", "[Empty]"}, {"Tag", 0}});
        assignments.append(QJsonObject{{"GroupID", 1}, {"TaskID", i}});
    }
    return QJsonObject{
        {"host", QJsonObject{{"sUserName", "Test User"}, {"lTimeCardID", 42}, {"sMainActivityTerm", "Activity"},
                             {"sMainActivity", "Audit"}}},
        {"settings", QJsonObject{{"Task Selection", 1}}},
        {"store", QJsonObject{{"local", QJsonObject{{"tblSteplets", rows},
                                                     {"tblTaskGroups", QJsonArray{QJsonObject{{"ID", 1}, {"GroupName", "Run"}}}},
                                                     {"tblGroupAssignments", assignments}}}}},
        {"script", QJsonArray{QJsonObject{{"form", "frmSteplet"}, {"click", "ProcessTasksButton"}},
                              QJsonObject{{"wait", 2.1 * templates + 30}},
                              QJsonObject{{"form", "frmProcessTasks"}, {"click", "cmdOK"}},
                              QJsonObject{{"form", "frmSteplet"}, {"close", true}}}}};
}

QStringList unreadableTasks(const QString& folder)
{
    QStringList bad;
    for (const QString& name : QDir(folder).entryList({QStringLiteral("*.ics")}, QDir::Files)) {
        QString why;
        try {
            if (!vdir::readTaskCalendar(vdir::readWholeFile(QDir(folder).filePath(name)), &why)) bad << name + ": " + why;
        } catch (const Failure& f) {
            bad << f.description();
        }
    }
    return bad;
}

QStringList temporariesIn(const QString& folder)
{
    QStringList found;
    for (const QString& name : QDir(folder).entryList(QDir::Files | QDir::Hidden))
        if (files::isTemporaryName(name)) found << name;
    return found;
}

QStringList checkProblems(const QString& dir)
{
    QString said;
    QTextStream out(&said);
    try {
        if (admin::check(dir, out)) return {};
    } catch (const Failure& f) {
        return {f.description()};
    }
    out.flush();
    return said.trimmed().split(QLatin1Char('\n'));
}

} // namespace steplets::test
