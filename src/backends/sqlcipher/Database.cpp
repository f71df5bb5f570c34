#include "Database.h"
#include "StoreErrors.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace steplets::sqlcipher {

namespace {
// Long enough for the host's own short writes to pass.
constexpr int kDefaultBusyTimeout = 5000;
QString textOf(const unsigned char* text, int bytes)
{
    return QString::fromUtf8(reinterpret_cast<const char*>(text), bytes);
}

bool onReadOnlyFileSystem(const QString& path)
{
    for (const QString& p : {path, QFileInfo(path).absolutePath()}) {
        struct statvfs fs;
        if (::statvfs(QFile::encodeName(p).constData(), &fs) == 0 && (fs.f_flag & ST_RDONLY)) return true;
    }
    return false;
}

// What went wrong, as a user can act on it; the engine's own text goes to the log.
QString inPlainWords(int rc, const QString& path)
{
    switch (rc & 0xff) {
    case SQLITE_FULL: return QStringLiteral("the disk is full");
    case SQLITE_IOERR: return QStringLiteral("the disk could not read or write it");
    case SQLITE_CORRUPT: return QStringLiteral("the file is damaged");
    case SQLITE_BUSY:
    case SQLITE_LOCKED: return QStringLiteral("another program keeps it locked");
    case SQLITE_NOMEM: return QStringLiteral("there is not enough memory");
    case SQLITE_TOOBIG: return QStringLiteral("a value is too large for it");
    case SQLITE_CONSTRAINT: return QStringLiteral("a value breaks a rule of its table");
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
        if (onReadOnlyFileSystem(path)) return QStringLiteral("it lies on a read-only file system");
        return (rc & 0xff) == SQLITE_CANTOPEN ? QStringLiteral("the file or its folder cannot be opened")
                                              : QStringLiteral("it may not be written");
    default: return QString::fromUtf8(sqlite3_errstr(rc));
    }
}
} // namespace

QString quoted(const QString& name)
{
    QString n = name;
    return QLatin1Char('"') + n.replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
}

ColumnKind kindOfDeclaredType(const QString& declared)
{
    const QString t = declared.toUpper();
    if (t.contains(QLatin1String("INT32")) || t == QLatin1String("INTEGER")) return ColumnKind::Long;
    if (t.contains(QLatin1String("INT16"))) return ColumnKind::Int16;
    if (t.contains(QLatin1String("BOOLINT"))) return ColumnKind::Bool;
    if (t.contains(QLatin1String("DATETEXT"))) return ColumnKind::Date;
    if (t.contains(QLatin1String("TEXT"))) return ColumnKind::Text;
    return ColumnKind::Any;
}

Value toColumnType(const Value& v, ColumnKind kind)
{
    if (v.isNull()) return v;
    switch (kind) {
    case ColumnKind::Long: return Value(static_cast<int>(v.toLong()));
    case ColumnKind::Int16: return Value(v.toInt16());
    case ColumnKind::Bool: return Value(v.toBool());
    case ColumnKind::Date: return Value(v.toDate());
    case ColumnKind::Text: return Value(v.toText());
    case ColumnKind::Any: return v;
    }
    return v;
}

// --- Statement ---------------------------------------------------------------------------------

Statement& Statement::reset()
{
    sqlite3_reset(m_stmt);
    sqlite3_clear_bindings(m_stmt);
    return *this;
}

Statement& Statement::bind(int index, const Value& v)
{
    int rc = SQLITE_OK;
    switch (v.type()) {
    case Value::Type::Null: rc = sqlite3_bind_null(m_stmt, index); break;
    case Value::Type::Bool: rc = sqlite3_bind_int(m_stmt, index, v.toBool() ? -1 : 0); break;
    case Value::Type::Int16:
    case Value::Type::Int32: rc = sqlite3_bind_int64(m_stmt, index, v.toLong()); break;
    case Value::Type::Double: rc = sqlite3_bind_double(m_stmt, index, v.toDouble()); break;
    case Value::Type::Date: {
        const QByteArray iso = v.toDate().toIso().toUtf8();
        rc = sqlite3_bind_text(m_stmt, index, iso.constData(), iso.size(), SQLITE_TRANSIENT);
        break;
    }
    case Value::Type::Text: {
        const QByteArray text = v.toText().toUtf8();
        rc = sqlite3_bind_text(m_stmt, index, text.constData(), text.size(), SQLITE_TRANSIENT);
        break;
    }
    }
    if (rc != SQLITE_OK) m_db->fail(rc, QStringLiteral("binding a value"));
    return *this;
}

Statement& Statement::bindKey(int index, qint64 key)
{
    const int rc = sqlite3_bind_int64(m_stmt, index, key);
    if (rc != SQLITE_OK) m_db->fail(rc, QStringLiteral("binding a row key"));
    return *this;
}

bool Statement::step()
{
    const int rc = sqlite3_step(m_stmt);
    if (rc == SQLITE_ROW) return true;
    if (rc == SQLITE_DONE) return false;
    const QString sql = QString::fromUtf8(sqlite3_sql(m_stmt));
    const bool reading = sqlite3_stmt_readonly(m_stmt) != 0;
    sqlite3_reset(m_stmt);
    m_db->fail(rc, reading ? QStringLiteral("reading: ") + sql : sql);
}

void Statement::run()
{
    while (step()) {}
}

qint64 Statement::key(int column) const { return sqlite3_column_int64(m_stmt, column); }

int Statement::columnCount() const { return sqlite3_column_count(m_stmt); }

Value Statement::value(int column, ColumnKind kind) const
{
    const int type = sqlite3_column_type(m_stmt, column);
    if (type == SQLITE_NULL) return Value();
    if (type == SQLITE_TEXT || type == SQLITE_BLOB) {
        const unsigned char* raw = sqlite3_column_text(m_stmt, column);
        const QString text = textOf(raw, sqlite3_column_bytes(m_stmt, column));
        if (kind == ColumnKind::Date) {
            if (auto d = Date::fromIso(text)) return Value(*d);
        }
        if (kind == ColumnKind::Bool && (text == QLatin1String("True") || text == QLatin1String("False")))
            return Value(text == QLatin1String("True"));
        return Value(text);
    }
    if (type == SQLITE_FLOAT) {
        const double d = sqlite3_column_double(m_stmt, column);
        if (kind == ColumnKind::Date) return Value(Date(d));
        return Value(d);
    }
    const qint64 i = sqlite3_column_int64(m_stmt, column);
    switch (kind) {
    case ColumnKind::Bool: return Value(i != 0);
    case ColumnKind::Int16:
        if (i >= -32768 && i <= 32767) return Value(Int16(static_cast<std::int16_t>(i)));
        break;
    case ColumnKind::Date: return Value(Date(static_cast<double>(i)));
    case ColumnKind::Text: return Value(QString::number(i));
    default: break;
    }
    if (i >= INT32_MIN && i <= INT32_MAX) return Value(static_cast<int>(i));
    return Value(static_cast<double>(i));
}

// --- Database ----------------------------------------------------------------------------------

std::shared_ptr<Database> Database::open(const QString& path, const QString& password, OpenMode mode)
{
    const QFileInfo info(path);
    if (mode != OpenMode::Create && !info.exists()) throw fileNotFound(path);
    if (mode == OpenMode::Create && info.exists())
        throw engineFailure(QStringLiteral("The database file %1 already exists; it is left as it is.").arg(QDir::toNativeSeparators(path)));
    // The engine takes an empty file for an empty database and writes one into it.
    if (mode != OpenMode::Create && info.isFile() && info.size() == 0) throw emptyDatabase(path);
    if (mode == OpenMode::Create) {
        // The user's data alone: the engine would make the file, and its -wal and -shm, 0644.
        const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0)
            throw engineFailure(QStringLiteral("The database file %1 cannot be created: %2.")
                                    .arg(QDir::toNativeSeparators(path), QString::fromLocal8Bit(std::strerror(errno))));
        ::close(fd);
    }

    // Only to read is still opened to write: a reader of a WAL database that may not write leaves
    // the -wal and -shm it made behind, where the last connection that may removes them.
    sqlite3* raw = nullptr;
    const int flags = SQLITE_OPEN_READWRITE;
    const int rc = sqlite3_open_v2(QFile::encodeName(path).constData(), &raw, flags, nullptr);
    std::shared_ptr<Database> db(new Database(raw, path));
    if (rc != SQLITE_OK) db->fail(rc, QStringLiteral("opening the file"));

    const QByteArray key = password.toUtf8();
    if (sqlite3_key(raw, key.constData(), key.size()) != SQLITE_OK)
        db->fail(SQLITE_ERROR, QStringLiteral("setting the key"));
    // The key is only tried by the first read; a wrong one shows as "not a database".
    const int probe = sqlite3_exec(raw, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr);
    if (probe == SQLITE_NOTADB) {
        db->close();
        throw notValidPassword(path);
    }
    if (probe != SQLITE_OK) db->fail(probe, QStringLiteral("reading the schema"));
    db->setBusyTimeout(kDefaultBusyTimeout);
    if (mode == OpenMode::ReadOnly) {
        db->exec(QStringLiteral("PRAGMA query_only=1"));
    } else {
        db->exec(QStringLiteral("PRAGMA journal_mode=WAL"));
        // In WAL mode a commit is in the log file when the statement returns; the log is synced
        // at checkpoints. So each write survives a killed program, while a power cut may take
        // the commits since the last checkpoint (the database stays whole); that allows one
        // commit per row.
        db->exec(QStringLiteral("PRAGMA synchronous=NORMAL"));
    }
    db->exec(QStringLiteral("PRAGMA cache_size=-16384"));
    return db;
}

Database::~Database() { close(); }

void Database::setBusyTimeout(int milliseconds) { sqlite3_busy_timeout(m_db, milliseconds); }

void Database::close()
{
    if (!m_db) return;
    for (auto& [sql, stmt] : m_statements) sqlite3_finalize(stmt->handle());
    m_statements.clear();
    sqlite3_close_v2(m_db);
    m_db = nullptr;
}

void Database::fail(int rc, const QString& context) const
{
    const QString message = m_db ? QString::fromUtf8(sqlite3_errmsg(m_db)) : QString::fromUtf8(sqlite3_errstr(rc));
    if ((rc & 0xff) == SQLITE_NOTADB) throw notValidPassword(m_path);
    if (message.startsWith(QLatin1String("no such table: ")))
        throw tableNotFound(message.mid(15));
    const QString doing = context.startsWith(QLatin1String("opening")) || context.startsWith(QLatin1String("setting the key"))
                              ? QStringLiteral("open")
                          : context.startsWith(QLatin1String("reading")) || context.startsWith(QLatin1String("SELECT"))
                              ? QStringLiteral("read")
                              : QStringLiteral("save a change to");
    throw engineFailure(QStringLiteral("Steplets cannot %1 the database %2: %3.")
                            .arg(doing, QDir::toNativeSeparators(m_path), inPlainWords(rc, m_path)),
                        QStringLiteral("SQLite: %1 (%2)").arg(message, context));
}

Statement& Database::prepare(const QString& sql, const QString& shownAs)
{
    if (!m_db) throw objectClosed(src::Connection);
    auto it = m_statements.find(sql);
    if (it != m_statements.end()) return it->second->reset();
    sqlite3_stmt* stmt = nullptr;
    const QByteArray utf8 = sql.toUtf8();
    const int rc = sqlite3_prepare_v2(m_db, utf8.constData(), utf8.size(), &stmt, nullptr);
    if (rc != SQLITE_OK) {
        const QString message = QString::fromUtf8(sqlite3_errmsg(m_db));
        if (message.startsWith(QLatin1String("no such table: "))) throw tableNotFound(message.mid(15));
        throw notUnderstood(shownAs.isEmpty() ? sql : shownAs, message);
    }
    auto& slot = m_statements[sql];
    slot = std::make_unique<Statement>(stmt, *this);
    return *slot;
}

void Database::exec(const QString& sql)
{
    if (!m_db) throw objectClosed(src::Connection);
    char* error = nullptr;
    const int rc = sqlite3_exec(m_db, sql.toUtf8().constData(), nullptr, nullptr, &error);
    sqlite3_free(error);
    if (rc != SQLITE_OK) fail(rc, sql);
}

qint64 Database::lastInsertKey() const { return sqlite3_last_insert_rowid(m_db); }

int Database::changes() const { return sqlite3_changes(m_db); }

bool Database::hasTable(const QString& table)
{
    Statement& st = prepare(QStringLiteral("SELECT 1 FROM sqlite_master WHERE type='table' AND name=? COLLATE NOCASE"));
    st.bind(1, Value(table));
    const bool found = st.step();
    st.reset();
    return found;
}

QStringList Database::tableNames()
{
    Statement& st = prepare(QStringLiteral(
        "SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid"));
    QStringList names;
    while (st.step()) names << st.value(0, ColumnKind::Text).toText();
    return names;
}

const QList<ColumnInfo>& Database::columns(const QString& table)
{
    const QString lower = table.toLower();
    auto it = m_columns.constFind(lower);
    if (it != m_columns.constEnd()) return *it;
    Statement& st = prepare(QStringLiteral("PRAGMA table_info(") + quoted(table) + QLatin1Char(')'));
    QList<ColumnInfo> list;
    while (st.step()) {
        ColumnInfo c;
        c.name = st.value(1, ColumnKind::Text).toText();
        const QString declared = st.value(2, ColumnKind::Text).textOrEmpty();
        c.kind = kindOfDeclaredType(declared);
        c.rowKey = st.value(5, ColumnKind::Long).longOrZero() == 1 && declared.toUpper() == QLatin1String("INTEGER");
        list << c;
    }
    if (list.isEmpty()) throw tableNotFound(table);
    return *m_columns.insert(lower, list);
}

void Database::noteWrite(const QString& table, bool deletion)
{
    Counts& c = m_versions[table.toLower()];
    ++c.writes;
    if (deletion) ++c.deletions;
}

} // namespace steplets::sqlcipher
