#include "Workspace.h"
#include "backends/qsettings/IniSettings.h"
#include "backends/scripted/Script.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/StoreData.h"
#include "backends/vdir/ContactCard.h"
#include "backends/vdir/TaskCalendar.h"
#include "backends/vdir/TaskProperties.h"
#include "backends/vdir/VdirFiles.h"
#include "platform/OutlookGateway.h"
#include "platform/PrivateFiles.h"
#include "session/modInitialize.h"
#include <QDir>
#include <QFile>
#include <QJsonArray>

namespace steplets::scenario {

namespace {

[[noreturn]] void problem(const QString& path, const QString& what) { throw SetupProblem{path + QStringLiteral(": ") + what}; }

// A folder name must stay inside the vdir root to become a collection.
bool isCollectionName(const QString& name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && !name.startsWith(QLatin1Char('.'));
}

// 1. The databases: created with the store's schema, then the rows, then the files left out.
void setUpDatabases(const Scenario& s, const Workspace& ws)
{
    for (sqlcipher::Db db : {sqlcipher::Db::Local, sqlcipher::Db::Link})
        if (QFile::exists(sqlcipher::fileOf(db, ws.dir)))
            problem(ws.dir, QStringLiteral("%1 already exists; a scenario plays on databases of its own").arg(sqlcipher::fileOf(db, ws.dir)));
    try {
        sqlcipher::createDatabases(ws.dir);
    } catch (const Failure& f) {
        problem(ws.dir, f.description());
    }
    try {
        sqlcipher::loadStore(ws.dir, s.storeRows);
    } catch (const Failure& f) {
        problem(QStringLiteral("store"), f.description());
    }
    auto leaveOut = [&](sqlcipher::Db db) {
        const QString file = sqlcipher::fileOf(db, ws.dir);
        for (const QString& suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")})
            QFile::remove(file + suffix);
    };
    if (s.missingLocal) leaveOut(sqlcipher::Db::Local);
    if (s.missingLink) leaveOut(sqlcipher::Db::Link);
}

// 2. The settings, through the same backend the component reads them with.
void setUpSettings(const Scenario& s, const Workspace& ws)
{
    if (s.settings.isEmpty()) return;
    try {
        IniSettings ini(ws.configDir());
        const auto key = ini.OpenKey(modInitialize::kRootPath, modInitialize::kKeyName);
        for (const auto& [name, value] : s.settings) {
            if (value.isString()) ini.WriteText(*key, name, value.toString());
            else ini.WriteNumber(*key, name, static_cast<long>(value.toDouble()));
        }
    } catch (const Failure& f) {
        problem(QStringLiteral("settings"), f.description());
    }
}

QString collectionOf(const QString& folderEID, const QString& argument, const QString& items)
{
    if (!isCollectionName(folderEID))
        problem(QStringLiteral("host.") + argument,
                QStringLiteral("\"%1\" cannot name the folder of %2").arg(folderEID, items));
    return folderEID;
}

void writeContact(const QJsonObject& item, const QString& path, const QString& collectionDir)
{
    vdir::ContactData c;
    c.uid = item.value(QStringLiteral("EntryID")).toString();
    for (auto it = item.begin(); it != item.end(); ++it) {
        if (it.key() == QLatin1String("EntryID")) continue;
        const QString where = path + QLatin1Char('.') + it.key();
        const QString canonical = vdir::canonicalContactProperty(it.key());
        if (canonical.isEmpty()) problem(where, QStringLiteral("a contact has no such property"));
        Value v = scripted::valueFromJson(it.value());
        try {
            switch (vdir::contactPropertyType(canonical)) {
            case vdir::ContactType::Date: if (!v.isNull()) v = v.toDate(); break;
            case vdir::ContactType::Number: if (!v.isNull()) v = v.toLong(); break;
            case vdir::ContactType::Text: if (!v.isNull()) v = v.toText(); break;
            }
        } catch (const Failure&) {
            problem(where, QStringLiteral("the value does not suit the property"));
        }
        vdir::setContactValue(c, canonical, v);
    }
    vdir::writeFileAtomically(QDir(collectionDir).filePath(c.uid + QStringLiteral(".vcf")), vdir::writeContactCard(c));
}

void writeTask(const QJsonObject& item, const QString& path, const QString& collectionDir, const Date& today,
               const QHash<QString, QString>& contactNames)
{
    vdir::TaskData t;
    t.uid = item.value(QStringLiteral("EntryID")).toString();
    for (auto it = item.begin(); it != item.end(); ++it) {
        const QString where = path + QLatin1Char('.') + it.key();
        const QString name = it.key();
        try {
            if (name == QLatin1String("EntryID")) {
                continue;
            } else if (name == QLatin1String("Body")) {
                t.Body = scripted::valueFromJson(it.value()).textOrEmpty();
            } else if (name == QLatin1String("Links")) {
                for (const QJsonValue& id : it.value().toArray())
                    t.links << vdir::LinkData{id.toString(), id.toString(), contactNames.value(id.toString())};
            } else if (name == QLatin1String("UserProperties")) {
                for (const QJsonValue& p : it.value().toArray()) {
                    const QJsonObject o = p.toObject();
                    t.userProperties << vdir::UserPropertyData{o.value(QStringLiteral("name")).toString(),
                                                               o.value(QStringLiteral("type")).toInt(ol::olText),
                                                               o.value(QStringLiteral("inFolderFields")).toBool(true),
                                                               scripted::valueFromJson(o.value(QStringLiteral("value")))};
                }
            } else if (name == QLatin1String("RecurrencePattern")) {
                vdir::PatternData pattern = vdir::freshPattern(t, today);
                const QJsonObject o = it.value().toObject();
                for (auto p = o.begin(); p != o.end(); ++p)
                    vdir::patternSet(pattern, p.key(), scripted::valueFromJson(p.value()));
                t.pattern = pattern;
            } else {
                vdir::taskSet(t, name, scripted::valueFromJson(it.value()), today);
            }
        } catch (const Failure& f) {
            problem(where, f.description());
        }
    }
    vdir::writeFileAtomically(QDir(collectionDir).filePath(t.uid + QStringLiteral(".ics")), vdir::writeTaskCalendar(t));
}

// 3. The vdir: a collection for each of the host's folders, then the items.
void setUpVdir(const Scenario& s, const Workspace& ws)
{
    const QDir root(ws.vdirRoot());
    for (const QString& folder : {s.host.sContactFolderEID, s.host.sTaskFolderEID})
        if (isCollectionName(folder) && !files::makePrivatePath(root.filePath(folder)))
            problem(ws.vdirRoot(), QStringLiteral("cannot create the collection \"%1\"").arg(folder));
    QHash<QString, QString> contactNames;
    if (!s.outlook.contacts.isEmpty()) {
        const QString dir = root.filePath(collectionOf(s.host.sContactFolderEID, QStringLiteral("sContactFolderEID"), QStringLiteral("outlook.contacts")));
        for (int i = 0; i < s.outlook.contacts.size(); ++i) {
            const QJsonObject& c = s.outlook.contacts[i];
            writeContact(c, QStringLiteral("outlook.contacts[%1]").arg(i), dir);
            const QByteArray written = vdir::readWholeFile(QDir(dir).filePath(c.value(QStringLiteral("EntryID")).toString() + QStringLiteral(".vcf")));
            if (const auto card = vdir::readContactCard(written, nullptr))
                contactNames.insert(card->uid, vdir::contactValue(*card, QStringLiteral("FileAs")).textOrEmpty());
        }
    }
    if (!s.outlook.tasks.isEmpty()) {
        const QString dir = root.filePath(collectionOf(s.host.sTaskFolderEID, QStringLiteral("sTaskFolderEID"), QStringLiteral("outlook.tasks")));
        for (int i = 0; i < s.outlook.tasks.size(); ++i)
            writeTask(s.outlook.tasks[i], QStringLiteral("outlook.tasks[%1]").arg(i), dir, s.now, contactNames);
    }
}

} // namespace

QString Workspace::vdirRoot() const { return QDir(dir).filePath(QStringLiteral("vdir")); }
QString Workspace::configDir() const { return QDir(dir).filePath(QStringLiteral("config")); }
QString Workspace::settingsFile() const { return IniSettings(configDir()).fileFor(modInitialize::kRootPath); }

void setUp(const Scenario& scenario, const Workspace& ws)
{
    try {
        setUpDatabases(scenario, ws);
        setUpSettings(scenario, ws);
        setUpVdir(scenario, ws);
    } catch (const Failure& f) {
        problem(ws.dir, f.description());
    }
}

} // namespace steplets::scenario
