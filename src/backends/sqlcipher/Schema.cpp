#include "Schema.h"
#include "Database.h"
#include "SqlCipherCatalog.h"
#include "SqlCipherConnection.h"
#include "StoreErrors.h"
#include "platform/PrivateFiles.h"
#include "platform/StoreGateway.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace steplets::sqlcipher {

namespace {

const QString kKey = QStringLiteral("INTEGER");
const QString kLong = QStringLiteral("INT32");
const QString kShort = QStringLiteral("INT16");
const QString kBool = QStringLiteral("BOOLINT");
const QString kDate = QStringLiteral("DATETEXT");
const QString kText = QStringLiteral("TEXT");
const QString kAutoKey = QStringLiteral("PRIMARY KEY AUTOINCREMENT");
const QStringList kJournals = {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral("-journal")};

TableDef steplets()
{
    TableDef t{QStringLiteral("tblSteplets"), {}};
    auto add = [&](const char* name, const QString& type, const QString& extra = {}) {
        t.columns << ColumnDef{QString::fromLatin1(name), type, extra};
    };
    add("ID", kKey, kAutoKey);
    add("ActualWork", kLong); add("BillingInformation", kText); add("Body", kText); add("Categories", kText);
    add("Companies", kText); add("Complete", kBool); add("DateCompleted", kDate); add("DueDate", kDate);
    add("Importance", kLong); add("IsRecurring", kBool); add("DayOfMonth", kLong); add("DayOfWeekMask", kLong);
    add("Instance", kLong); add("Interval", kLong); add("MonthOfYear", kLong); add("NoEndDate", kBool);
    add("Occurrences", kLong); add("PatternEndDate", kDate); add("PatternStartDate", kDate);
    add("RecurrenceType", kLong); add("Regenerate", kBool); add("Mileage", kText); add("NoAging", kBool);
    add("PercentComplete", kLong); add("ReminderOverrideDefault", kBool); add("ReminderPlaySound", kBool);
    add("ReminderSet", kBool); add("ReminderSoundFile", kText); add("ReminderTime", kDate); add("Role", kText);
    add("Sensitivity", kLong); add("StartDate", kDate); add("Status", kLong);
    add("Reserved34", kText); add("Reserved35", kText);
    add("Subject", kText); add("TeamTask", kBool); add("TotalWork", kLong);
    add("Reserved39", kText);
    add("DueDateOffset", kLong); add("PatternEndOffset", kLong); add("PatternStartOffset", kLong);
    add("ReminderOffset", kLong); add("StartDateOffset", kLong); add("DateType", kShort);
    add("FillIn1", kText); add("FillIn2", kText); add("FillIn3", kText); add("FillIn4", kText);
    add("UserPrompt1", kText); add("UserPrompt2", kText); add("UserPrompt3", kText); add("UserPrompt4", kText);
    add("PromptForAssignee", kBool); add("AnchorDescription", kText);
    add("Tag", kShort, QStringLiteral("DEFAULT 0"));
    return t;
}

QList<TableDef> localDefs()
{
    const QString no = QStringLiteral("DEFAULT 0");
    return {
        steplets(),
        {QStringLiteral("tblTaskGroups"),
         {{QStringLiteral("ID"), kKey, kAutoKey}, {QStringLiteral("GroupName"), kText, {}},
          {QStringLiteral("CommonAnchor"), kBool, no}, {QStringLiteral("CommonUserResponse"), kBool, no},
          {QStringLiteral("CommonAnchorDescription"), kText, {}}, {QStringLiteral("Prompt"), kText, {}}}},
        {QStringLiteral("tblGroupAssignments"),
         {{QStringLiteral("GroupID"), kLong, {}}, {QStringLiteral("TaskID"), kLong, {}}}},
    };
}

QList<TableDef> linkDefs()
{
    return {
        {QStringLiteral("tblContacts"),
         {{QStringLiteral("ContactID"), kLong, {}}, {QStringLiteral("ContactEntryID"), kText, {}},
          {QStringLiteral("ContactName"), kText, {}}, {QStringLiteral("ContactAccount"), kText, {}},
          {QStringLiteral("Active"), kBool, QStringLiteral("DEFAULT 0")}}},
        {QStringLiteral("tblTasks"), {{QStringLiteral("EntryID"), kText, {}}, {QStringLiteral("TimeCardID"), kLong, {}}}},
        {linkTableName(),
         {{QStringLiteral("TableName"), kText, QStringLiteral("PRIMARY KEY")}, {QStringLiteral("ProviderString"), kText, {}}}},
    };
}

QString createStatement(const TableDef& t)
{
    QStringList cols;
    for (const ColumnDef& c : t.columns)
        cols << (quoted(c.name) + QLatin1Char(' ') + c.type + (c.extra.isEmpty() ? QString() : QLatin1Char(' ') + c.extra));
    return QStringLiteral("CREATE TABLE ") + quoted(t.name) + QStringLiteral(" (") + cols.join(QStringLiteral(", ")) + QLatin1Char(')');
}

// Makes the database complete under a temporary name and renames it into place, so that its
// name never stands for a file without tables, whenever the process is stopped. A table-less
// file that stands there already is replaced, with its journal files.
void create(Db which, const QString& dir, bool replace)
{
    const QString final = fileOf(which, dir);
    const QString temp = files::temporaryNameFor(final);
    try {
        auto db = Database::open(temp, connectionPart(connectionStringOf(which, dir), QStringLiteral("Jet OLEDB:Database Password")),
                                 OpenMode::Create);
        db->exec(QStringLiteral("BEGIN"));
        for (const TableDef& t : tablesOf(which)) db->exec(createStatement(t));
        if (which == Db::Link) {
            // The admin options live with the host; the link starts out pointing nowhere in particular.
            db->exec(QStringLiteral("INSERT INTO ") + quoted(linkTableName())
                     + QStringLiteral(" (TableName, ProviderString) VALUES ('tblAdminOptions', '')"));
        }
        db->exec(QStringLiteral("COMMIT"));
        db->exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
        db->close();
    } catch (...) {
        for (const QString& suffix : kJournals) QFile::remove(temp + suffix);
        throw;
    }
    if (replace)
        for (const QString& suffix : {QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral("-journal")})
            QFile::remove(final + suffix);
    const QString why = files::renameDurably(temp, final, replace);
    if (!why.isEmpty()) {
        for (const QString& suffix : kJournals) QFile::remove(temp + suffix);
        throw Failure(errc::EngineFailure,
                      QStringLiteral("The database file %1 cannot be put in place: %2.").arg(QDir::toNativeSeparators(final), why),
                      src::Engine);
    }
}

// What stands under a database's name: nothing, a file an interrupted creation left (empty or
// without tables), or a database in use. A file that is no database of ours is a failure.
enum class Found { Nothing, Unfinished, InUse };

Found inspect(Db which, const QString& dir)
{
    const QFileInfo info(fileOf(which, dir));
    if (!info.exists()) return Found::Nothing;
    if (info.isFile() && info.size() == 0) return Found::Unfinished;
    auto db = openDatabase(connectionStringOf(which, dir), OpenMode::ReadOnly);
    return db->tableNames().isEmpty() ? Found::Unfinished : Found::InUse;
}

void checkTables(Database& db, Db which, QStringList& problems)
{
    const QString file = QFileInfo(db.path()).fileName();
    Statement& integrity = db.prepare(QStringLiteral("PRAGMA integrity_check"));
    while (integrity.step()) {
        const QString line = integrity.value(0, ColumnKind::Text).toText();
        if (line != QLatin1String("ok")) problems << file + QStringLiteral(": integrity: ") + line;
    }
    for (const TableDef& t : tablesOf(which)) {
        if (!db.hasTable(t.name)) {
            problems << file + QStringLiteral(": table ") + t.name + QStringLiteral(" is missing");
            continue;
        }
        const QList<ColumnInfo>& have = db.columns(t.name);
        for (int i = 0; i < t.columns.size(); ++i) {
            const ColumnDef& want = t.columns[i];
            if (i >= have.size()) {
                problems << QStringLiteral("%1: %2: column %3 (%4) is missing").arg(file, t.name).arg(i).arg(want.name);
            } else if (have[i].name != want.name) {
                problems << QStringLiteral("%1: %2: column %3 is %4, expected %5").arg(file, t.name).arg(i).arg(have[i].name, want.name);
            } else if (have[i].kind != kindOfDeclaredType(want.type)) {
                problems << QStringLiteral("%1: %2: column %3 has the wrong type").arg(file, t.name, want.name);
            }
        }
    }
}

// Rows that point at nothing: the processing of a group fails on them later.
void checkAssignments(Database& db, QStringList& problems)
{
    if (!db.hasTable(QStringLiteral("tblGroupAssignments")) || !db.hasTable(QStringLiteral("tblSteplets"))
        || !db.hasTable(QStringLiteral("tblTaskGroups")))
        return;
    Statement& st = db.prepare(QStringLiteral(
        "SELECT GroupID, TaskID, GroupID NOT IN (SELECT ID FROM tblTaskGroups), TaskID NOT IN (SELECT ID FROM tblSteplets) "
        "FROM tblGroupAssignments ORDER BY rowid"));
    while (st.step()) {
        const QString g = st.value(0, ColumnKind::Any).textOrEmpty();
        const QString t = st.value(1, ColumnKind::Any).textOrEmpty();
        if (st.value(2, ColumnKind::Long).longOrZero())
            problems << QStringLiteral("OVLocal.db: tblGroupAssignments: row (GroupID %1, TaskID %2) names no group").arg(g, t);
        if (st.value(3, ColumnKind::Long).longOrZero())
            problems << QStringLiteral("OVLocal.db: tblGroupAssignments: row (GroupID %1, TaskID %2) names no template").arg(g, t);
    }
}

void checkLinks(Database& db, QStringList& problems)
{
    if (!db.hasTable(linkTableName())) return;
    Statement& st = db.prepare(QStringLiteral("SELECT count(*) FROM ") + quoted(linkTableName())
                               + QStringLiteral(" WHERE TableName='tblAdminOptions'"));
    st.step();
    const bool linked = st.value(0, ColumnKind::Long).longOrZero() == 1;
    st.reset();
    if (!linked) problems << QStringLiteral("OVLink.db: the linked table tblAdminOptions is not recorded");
}

} // namespace

const QList<TableDef>& tablesOf(Db db)
{
    static const QList<TableDef> local = localDefs();
    static const QList<TableDef> link = linkDefs();
    return db == Db::Local ? local : link;
}

QString fileOf(Db db, const QString& dir)
{
    return QDir(dir).filePath(db == Db::Local ? storeFiles::localFileName() : storeFiles::linkFileName());
}

QString connectionStringOf(Db db, const QString& dir)
{
    const QString clean = QDir::cleanPath(dir);
    return db == Db::Local ? storeFiles::localConnectionString(clean) : storeFiles::linkConnectionString(clean);
}

QStringList createDatabases(const QString& dir)
{
    if (!files::makePrivatePath(dir))
        throw Failure(errc::EngineFailure, QStringLiteral("The directory %1 cannot be created.").arg(dir), src::Engine);
    files::sweepTemporaries(dir);
    const Found local = inspect(Db::Local, dir);
    const Found link = inspect(Db::Link, dir);
    if (local == Found::InUse && link == Found::InUse)
        throw Failure(errc::EngineFailure,
                      QStringLiteral("%1 already exists, as does %2; both are left as they are.")
                          .arg(QDir::toNativeSeparators(fileOf(Db::Local, dir)), QDir::toNativeSeparators(fileOf(Db::Link, dir))),
                      src::Engine);
    QStringList made;
    for (const auto& [which, found] : {std::pair{Db::Local, local}, std::pair{Db::Link, link}}) {
        if (found == Found::InUse) continue;
        create(which, dir, found == Found::Unfinished);
        made << QDir::toNativeSeparators(fileOf(which, dir)) + (found == Found::Unfinished ? QStringLiteral(" (repaired)") : QString());
    }
    return made;
}

QStringList checkDatabases(const QString& dir)
{
    QStringList problems;
    auto local = openDatabase(connectionStringOf(Db::Local, dir), OpenMode::ReadOnly);
    auto link = openDatabase(connectionStringOf(Db::Link, dir), OpenMode::ReadOnly);
    checkTables(*local, Db::Local, problems);
    checkAssignments(*local, problems);
    checkTables(*link, Db::Link, problems);
    checkLinks(*link, problems);
    return problems;
}

QString dataDirectory(const QString& given)
{
    if (!given.isEmpty()) return given;
    const QString home = qEnvironmentVariable("STEPLETS_HOME");
    if (!home.isEmpty()) return home;
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/steplets");
}

} // namespace steplets::sqlcipher
