#include "Transcript.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/StoreData.h"
#include "backends/vdir/ContactCard.h"
#include "backends/vdir/TaskCalendar.h"
#include "backends/vdir/TaskProperties.h"
#include "backends/vdir/VdirFiles.h"
#include "session/modInitialize.h"
#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>

namespace steplets::scenario {

namespace {

QString dbName(sqlcipher::Db db) { return db == sqlcipher::Db::Local ? QStringLiteral("local") : QStringLiteral("link"); }

// The dump reads both databases at once; a database that is there alone is read from a scratch
// directory that pairs it with an empty one.
QJsonObject dumpAlone(const Workspace& ws, sqlcipher::Db present)
{
    QTemporaryDir scratch;
    sqlcipher::createDatabases(scratch.path());
    const QString from = sqlcipher::fileOf(present, ws.dir);
    const QString to = sqlcipher::fileOf(present, scratch.path());
    for (const QString& suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")}) {
        QFile::remove(to + suffix);
        if (QFile::exists(from + suffix) && !QFile::copy(from + suffix, to + suffix))
            throw Failure(75, QStringLiteral("cannot copy %1 to read it").arg(from + suffix));
    }
    const QJsonObject both = sqlcipher::dumpStore(scratch.path());
    return QJsonObject{{dbName(present), both.value(dbName(present))}};
}

QJsonObject taskJson(const QString& id, const vdir::TaskData& t)
{
    QJsonObject o{{QStringLiteral("EntryID"), id}};
    for (const QString& name : vdir::taskPropertyNames()) o.insert(name, vdir::taskGet(t, name).toJson());
    o.insert(QStringLiteral("Body"), t.Body);
    QJsonArray links;
    for (const vdir::LinkData& l : t.links) links.append(l.entryId);
    o.insert(QStringLiteral("Links"), links);
    QJsonArray props;
    for (const vdir::UserPropertyData& u : t.userProperties)
        props.append(QJsonObject{{QStringLiteral("name"), u.name}, {QStringLiteral("type"), u.type},
                                 {QStringLiteral("value"), u.value.toJson()}, {QStringLiteral("inFolderFields"), u.inFolderFields}});
    o.insert(QStringLiteral("UserProperties"), props);
    if (t.pattern) {
        QJsonObject pattern;
        for (const QString& name : vdir::patternPropertyNames()) pattern.insert(name, vdir::patternGet(*t.pattern, name).toJson());
        o.insert(QStringLiteral("RecurrencePattern"), pattern);
    }
    o.insert(QStringLiteral("Assigned"), t.assigned);
    return o;
}

QJsonObject contactJson(const QString& id, const vdir::ContactData& c)
{
    QJsonObject o{{QStringLiteral("EntryID"), id}};
    for (const QString& name : vdir::contactFillInProperties()) o.insert(name, vdir::contactValue(c, name).toJson());
    for (auto it = c.stored.begin(); it != c.stored.end(); ++it)
        if (!o.contains(it.key())) o.insert(it.key(), it.value().toJson());
    return o;
}

QJsonObject itemJson(const QString& id, const QString& path)
{
    QString why;
    try {
        const QByteArray raw = vdir::readWholeFile(path);
        if (path.endsWith(QLatin1String(".ics"))) {
            if (const auto t = vdir::readTaskCalendar(raw, &why)) return taskJson(id, *t);
        } else if (const auto c = vdir::readContactCard(raw, &why)) {
            return contactJson(id, *c);
        }
    } catch (const Failure& f) {
        why = f.description();
    }
    return QJsonObject{{QStringLiteral("EntryID"), id}, {QStringLiteral("error"), why}};
}

// Lists the items of one kind in the transcript's order.
QJsonArray itemsInOrder(const QMap<QString, QString>& files, const QStringList& given, const QStringList& created)
{
    QJsonArray out;
    QStringList done;
    for (const QStringList* list : {&given, &created})
        for (const QString& id : *list)
            if (files.contains(id) && !done.contains(id)) {
                out.append(itemJson(id, files.value(id)));
                done << id;
            }
    for (auto it = files.begin(); it != files.end(); ++it)
        if (!done.contains(it.key())) out.append(itemJson(it.key(), it.value()));
    return out;
}

} // namespace


QJsonObject storeAfter(const Workspace& ws)
{
    const bool local = QFile::exists(sqlcipher::fileOf(sqlcipher::Db::Local, ws.dir));
    const bool link = QFile::exists(sqlcipher::fileOf(sqlcipher::Db::Link, ws.dir));
    try {
        if (local && link) return sqlcipher::dumpStore(ws.dir);
        if (local) return dumpAlone(ws, sqlcipher::Db::Local);
        if (link) return dumpAlone(ws, sqlcipher::Db::Link);
        return {};
    } catch (const Failure& f) {
        return QJsonObject{{QStringLiteral("error"), f.description()}};
    }
}

QJsonObject settingsAfter(const Workspace& ws)
{
    QJsonObject values;
    if (!QFile::exists(ws.settingsFile())) return values;
    QSettings ini(ws.settingsFile(), QSettings::IniFormat);
    ini.beginGroup(modInitialize::kKeyName);
    // The file keeps no type: what reads as a whole number was written as one.
    static const QRegularExpression whole(QStringLiteral("^-?[0-9]{1,10}$"));
    for (const QString& key : ini.childKeys()) {
        const QVariant v = ini.value(key);
        const QString text = v.typeId() == QMetaType::QStringList ? v.toStringList().join(QStringLiteral(", ")) : v.toString();
        bool ok = false;
        const qint64 n = text.toLongLong(&ok);
        if (whole.match(text).hasMatch() && ok && n >= INT32_MIN && n <= INT32_MAX) values.insert(key, n);
        else values.insert(key, text);
    }
    return values;
}

QJsonObject outlookAfter(const Workspace& ws, const ItemOrder& order)
{
    QMap<QString, QString> tasks, contacts;
    const QDir root(ws.vdirRoot());
    for (const QString& collection : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QDir dir(root.filePath(collection));
        for (const QString& f : dir.entryList({QStringLiteral("*.ics"), QStringLiteral("*.vcf")}, QDir::Files, QDir::Name)) {
            if (f.startsWith(QLatin1Char('.'))) continue;
            (f.endsWith(QLatin1String(".ics")) ? tasks : contacts).insert(f.chopped(4), dir.filePath(f));
        }
    }
    return QJsonObject{{QStringLiteral("tasks"), itemsInOrder(tasks, order.givenTasks, order.created)},
                       {QStringLiteral("contacts"), itemsInOrder(contacts, order.givenContacts, order.created)}};
}

QJsonObject transcript(const TranscriptParts& parts, const Workspace& ws, const ItemOrder& order)
{
    return QJsonObject{{QStringLiteral("status"), parts.status},
                       {QStringLiteral("events"), parts.events},
                       {QStringLiteral("store"), storeAfter(ws)},
                       {QStringLiteral("settings"), settingsAfter(ws)},
                       {QStringLiteral("outlook"), outlookAfter(ws, order)},
                       {QStringLiteral("session"), QJsonObject{{QStringLiteral("ErrorTrail"), parts.errorTrail}}}};
}

} // namespace steplets::scenario
