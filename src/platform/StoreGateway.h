#pragma once
// The database port: connection, recordset, command and catalog objects as the windows and
// modules use them. Values are Values; nothing here knows the database engine.
//
// Recordset rules the callers rely on:
//  - The row keys are taken at Open and at Requery (keyset); rows that another recordset adds
//    appear only after Requery, rows added here by AddNew/Update appear at once.
//  - Filter("Col = value") narrows the rows to those matching at that moment; Filter(0) clears.
//    RecordCount, the moves and the current row then mean the filtered rows. A row edited so
//    that it no longer matches stays until the filter is set again.
//  - Delete removes the current row and leaves the cursor on the gap it left: a further Delete
//    removes the row after the gap, MoveNext lands on it. So both "Delete n times" and
//    "Delete, MoveNext n times" empty an n-row set.
//  - A field read or written with no current row is failure 3021.
//  - Field writes are buffered until Update (or a move, which updates implicitly). Requery and
//    Filter read the rows again and drop an edit that was not updated: a routine that failed
//    between AddNew (or its first field write) and Update leaves no half-written row behind.
#include "runtime/Value.h"
#include <QString>
#include <memory>

namespace steplets {

// The recordset, lock and command argument values the windows pass, named.
namespace ado {
inline constexpr int adOpenKeyset = 1;
inline constexpr int adOpenStatic = 3;
inline constexpr int adLockReadOnly = 1;
inline constexpr int adLockOptimistic = 3;
inline constexpr int adCmdText = 1;
inline constexpr int adCmdTable = 2;
inline constexpr int adCmdUnspecified = -1;
inline constexpr int adExecuteNoRecords = 128;
inline constexpr int adStateClosed = 0;
inline constexpr int adStateOpen = 1;
} // namespace ado

// The two databases of the component: file names, and the connection strings with their fixed
// passwords. The directory is taken without a trailing separator.
namespace storeFiles {
QString localFileName();                                   // "OVLocal.db"
QString linkFileName();                                    // "OVLink.db"
QString localConnectionString(const QString& directory);
QString linkConnectionString(const QString& directory);
} // namespace storeFiles

class Connection {
public:
    virtual ~Connection() = default;
    // A missing file, a wrong password or a file that is no database is a Failure naming the file.
    virtual void Open(const QString& connectionString, const QString& userId = {},
                      const QString& password = {}, long options = ado::adCmdUnspecified) = 0;
    virtual void Close() = 0;
    virtual int State() const = 0;                          // ado::adStateClosed / adStateOpen
};

class Recordset;

// One column of the current row; a light handle, valid while its recordset lives.
class Field {
public:
    Field(Recordset& rs, int index) : m_rs(&rs), m_index(index) {}
    Value value() const;
    void setValue(const Value& v);
    QString name() const;
    int index() const { return m_index; }

private:
    Recordset* m_rs;
    int m_index;
};

class Recordset {
public:
    virtual ~Recordset() = default;

    virtual void Open(const QString& source, const std::shared_ptr<Connection>& connection,
                      int cursorType = ado::adOpenKeyset, int lockType = ado::adLockOptimistic,
                      int options = ado::adCmdText) = 0;
    virtual void Close() = 0;
    virtual int State() const = 0;

    virtual bool BOF() = 0;
    virtual bool EOF_() = 0;                                // EOF is a macro of the C library
    virtual long RecordCount() = 0;
    virtual void MoveFirst() = 0;
    virtual void MoveNext() = 0;
    virtual void Move(long rows) = 0;

    virtual void AddNew() = 0;
    virtual void Update() = 0;
    virtual void Delete() = 0;
    virtual void Requery() = 0;

    // A criterion "Column = value" (number, 'text', True/False, Null), or 0 to clear.
    virtual void Filter(const QString& criteria) = 0;
    virtual void Filter(long none) = 0;                     // only 0 is accepted
    virtual QString currentFilter() const = 0;              // empty when none

    Field Fields(int position) { return Field(*this, checkedIndex(position)); }
    Field Fields(const QString& name) { return Field(*this, fieldIndex(name)); }
    virtual int FieldCount() const = 0;
    virtual QString fieldName(int index) const = 0;
    // Unknown name: failure 3265.
    virtual int fieldIndex(const QString& name) const = 0;

    virtual Value fieldValue(int index) = 0;
    virtual void setFieldValue(int index, const Value& v) = 0;

protected:
    virtual int checkedIndex(int position) const = 0;
};

inline Value Field::value() const { return m_rs->fieldValue(m_index); }
inline void Field::setValue(const Value& v) { m_rs->setFieldValue(m_index, v); }
inline QString Field::name() const { return m_rs->fieldName(m_index); }

class Command {
public:
    virtual ~Command() = default;
    virtual void ActiveConnection(const std::shared_ptr<Connection>& connection) = 0;
    virtual void CommandText(const QString& text) = 0;
    virtual void CommandType(int type) = 0;                 // ado::adCmdText
    virtual void Prepared(bool prepared) = 0;
    virtual void Execute(int options = ado::adExecuteNoRecords) = 0;
};

class TableProperty {
public:
    virtual ~TableProperty() = default;
    virtual Value value() const = 0;
    virtual void setValue(const Value& v) = 0;
};

class CatalogTable {
public:
    virtual ~CatalogTable() = default;
    virtual QString Name() const = 0;
    // Unknown property: failure 3265.
    virtual std::shared_ptr<TableProperty> Properties(const QString& name) = 0;
};

class Catalog {
public:
    virtual ~Catalog() = default;
    virtual void ActiveConnection(const std::shared_ptr<Connection>& connection) = 0;
    // Unknown table: failure 3265.
    virtual std::shared_ptr<CatalogTable> Tables(const QString& name) = 0;
};

class StoreGateway {
public:
    virtual ~StoreGateway() = default;
    virtual std::shared_ptr<Connection> CreateConnection() = 0;
    virtual std::shared_ptr<Recordset> CreateRecordset() = 0;
    virtual std::shared_ptr<Command> CreateCommand() = 0;
    virtual std::shared_ptr<Catalog> CreateCatalog() = 0;
};

} // namespace steplets
