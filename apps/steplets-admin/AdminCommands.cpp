#include "AdminCommands.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/StoreData.h"
#include "backends/vdir/TaskCalendar.h"
#include "backends/vdir/VdirFiles.h"
#include "platform/runtime/Failure.h"
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace steplets::admin {

void dump(const QString& dir, QTextStream& out)
{
    out << QJsonDocument(sqlcipher::dumpStore(dir)).toJson(QJsonDocument::Indented);
}

namespace {

// The task file of an EntryID in any collection of the vdir beside the databases, or empty.
QString taskFileOf(const QString& vdirRoot, const QString& entryId)
{
    const QDir root(vdirRoot);
    for (const QString& collection : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString path = root.filePath(collection + QLatin1Char('/') + entryId + QStringLiteral(".ics"));
        if (QFileInfo::exists(path)) return path;
    }
    return {};
}

// Each task the host's record names must be in the task folder and carry the time card's mark,
// which a second save adds after the first; a save stopped between the two leaves it out.
QStringList checkRecordedTasks(const QString& dir)
{
    QStringList problems;
    const QJsonArray rows = sqlcipher::dumpStore(dir).value(QStringLiteral("link")).toObject().value(QStringLiteral("tblTasks")).toArray();
    const QString vdirRoot = QDir(dir).filePath(QStringLiteral("vdir"));
    for (const QJsonValue& row : rows) {
        const QString entryId = row.toObject().value(QStringLiteral("EntryID")).toString();
        const QString card = row.toObject().value(QStringLiteral("TimeCardID")).toVariant().toString();
        const QString task = QStringLiteral("tblTasks: the task %1 of time card %2").arg(entryId, card);
        const QString path = entryId.isEmpty() || entryId.contains(QLatin1Char('/')) ? QString() : taskFileOf(vdirRoot, entryId);
        if (path.isEmpty()) {
            problems << QStringLiteral("OVLink.db: %1 is missing from the task folders in %2").arg(task, QDir::toNativeSeparators(vdirRoot));
            continue;
        }
        QString why;
        std::optional<vdir::TaskData> data;
        try {
            data = vdir::readTaskCalendar(vdir::readWholeFile(path), &why);
        } catch (const Failure& f) {
            why = f.description();
        }
        if (!data) {
            problems << QStringLiteral("OVLink.db: %1 cannot be read: %2").arg(task, why);
            continue;
        }
        const bool marked = std::any_of(data->userProperties.begin(), data->userProperties.end(), [&](const vdir::UserPropertyData& u) {
            return u.name == QLatin1String("OrdivaneID") && u.value.textOrEmpty() == entryId;
        });
        if (!marked)
            problems << QStringLiteral("OVLink.db: %1 lacks its time-card properties (OrdivaneID): %2")
                            .arg(task, QDir::toNativeSeparators(path));
    }
    return problems;
}

} // namespace

bool check(const QString& dir, QTextStream& out)
{
    QStringList problems = sqlcipher::checkDatabases(dir);
    if (problems.isEmpty()) problems << checkRecordedTasks(dir);
    for (const QString& p : problems) out << p << '\n';
    if (problems.isEmpty())
        out << "ok: both databases in " << QDir::toNativeSeparators(dir) << " are sound, and every task they record is whole\n";
    return problems.isEmpty();
}

} // namespace steplets::admin
