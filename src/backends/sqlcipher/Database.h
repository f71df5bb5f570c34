#pragma once
// One open SQLCipher file: keyed open, WAL journal, cached statements, the column layout of its
// tables and a change count per table, so that recordsets of the same connection notice each
// other's writes. Internal to the backend.
#include "platform/runtime/Value.h"
#include <QHash>
#include <QList>
#include <QString>
#include <memory>
#include <unordered_map>

struct sqlite3;
struct sqlite3_stmt;

namespace steplets::sqlcipher {

// How a column's values are converted on write and read, from its declared type.
enum class ColumnKind { Long, Int16, Bool, Date, Text, Any };

struct ColumnInfo {
    QString name;
    ColumnKind kind = ColumnKind::Any;
    bool rowKey = false;                  // the INTEGER PRIMARY KEY, the same as the row's key
};

// Brings a value to the column's own type: Long, Int16, Bool, Date or Text (Null stays Null).
Value toColumnType(const Value& v, ColumnKind kind);
ColumnKind kindOfDeclaredType(const QString& declared);

class Database;

class Statement {
public:
    Statement(sqlite3_stmt* stmt, Database& db) : m_stmt(stmt), m_db(&db) {}
    sqlite3_stmt* handle() const { return m_stmt; }
    // Rewinds the statement and clears its bindings, ready for a new run.
    Statement& reset();
    Statement& bind(int index, const Value& v);    // 1-based; Value as the column holds it
    Statement& bindKey(int index, qint64 key);
    bool step();                                    // true while a row is there
    void run();                                     // steps to the end
    qint64 key(int column) const;
    Value value(int column, ColumnKind kind) const;
    int columnCount() const;

private:
    sqlite3_stmt* m_stmt;
    Database* m_db;
};

// How a file is opened: to read and write; only to read (the engine refuses every write, and
// the journal's side files go with the connection as for any other); or made afresh (a file
// that is there is a failure).
enum class OpenMode { ReadWrite, ReadOnly, Create };

class Database {
public:
    // Opens the file with the password as its key. An existing file that is empty is no database:
    // a failure that names it, and it is left as it is.
    static std::shared_ptr<Database> open(const QString& path, const QString& password,
                                          OpenMode mode = OpenMode::ReadWrite);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    const QString& path() const { return m_path; }
    bool isOpen() const { return m_db != nullptr; }
    void close();

    // A statement prepared once and kept; a failure to prepare names the query.
    // `shownAs` is the text a failure to prepare names (the caller's own query text).
    Statement& prepare(const QString& sql, const QString& shownAs = {});
    void exec(const QString& sql);
    // How long a statement waits for another connection's write lock before it fails.
    void setBusyTimeout(int milliseconds);
    qint64 lastInsertKey() const;
    int changes() const;                            // rows touched by the last statement

    bool hasTable(const QString& table);
    QStringList tableNames();
    // The table's columns in order; a missing table is a failure naming it.
    const QList<ColumnInfo>& columns(const QString& table);

    // Change counts of a table: every write, and the writes that removed rows.
    struct Counts { quint64 writes = 0; quint64 deletions = 0; };
    // Stable for the life of the database, so a recordset can keep it.
    const Counts& counts(const QString& table) { return m_versions[table.toLower()]; }
    void noteWrite(const QString& table, bool deletion);

    // A failure of the engine: the file and what went wrong in words for the user, then on a
    // line of its own the engine's message and `context` (the statement) for the log.
    [[noreturn]] void fail(int rc, const QString& context) const;

private:
    Database(sqlite3* db, QString path) : m_db(db), m_path(std::move(path)) {}
    sqlite3* m_db;
    QString m_path;
    std::unordered_map<QString, std::unique_ptr<Statement>> m_statements;
    QHash<QString, QList<ColumnInfo>> m_columns;
    std::unordered_map<QString, Counts> m_versions;     // node-based: references stay valid
};

// Double quotes a name for the engine.
QString quoted(const QString& name);

} // namespace steplets::sqlcipher
