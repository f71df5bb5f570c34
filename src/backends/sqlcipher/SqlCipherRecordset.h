#pragma once
// A recordset over one table: the row keys in query order (the keyset), a filtered view of
// them, a position in the view, the current row read on demand, and the edit buffer of AddNew
// and field writes, written by Update.
#include "Database.h"
#include "QueryText.h"
#include "StoreErrors.h"
#include "platform/StoreGateway.h"
#include <map>
#include <unordered_map>
#include <vector>

namespace steplets::sqlcipher {

class SqlCipherRecordset : public Recordset {
public:
    void Open(const QString& source, const std::shared_ptr<Connection>& connection, int cursorType,
              int lockType, int options) override;
    void Close() override;
    int State() const override;

    bool BOF() override;
    bool EOF_() override;
    long RecordCount() override;
    void MoveFirst() override;
    void MoveNext() override;
    void Move(long rows) override;

    void AddNew() override;
    void Update() override;
    void Delete() override;
    void Requery() override;

    void Filter(const QString& criteria) override;
    void Filter(long none) override;
    QString currentFilter() const override { return m_filter; }

    int FieldCount() const override;
    QString fieldName(int index) const override;
    int fieldIndex(const QString& name) const override;
    Value fieldValue(int index) override;
    void setFieldValue(int index, const Value& v) override;

protected:
    int checkedIndex(int position) const override;

private:
    enum class Edit { None, Editing, Adding };

    Database& db(const QString& source = src::Recordset);
    void catchUp();                          // notices writes by other users of the connection
    void loadKeyset();
    void applyFilter();
    void toFirst();
    void commitPending();
    // An unfinished edit is forgotten: what the database holds is read again.
    void dropPending();                    // the implicit Update of a move
    bool hasCurrent() const;
    qint64 currentKey() const;
    const std::vector<Value>& currentRow();
    void readAhead();                        // the rows from the current one on, in one statement
    void insertPending();
    void updatePending();
    void noteOwnWrite(bool deletion);
    Statement& updateStatement();
    void dropKey(qint64 key);

    std::shared_ptr<Database> m_db;
    QString m_source;
    SelectQuery m_query;
    QList<ColumnInfo> m_columns;             // the recordset's fields, in order
    int m_keyColumn = -1;                    // field that is the row key, if selected
    bool m_readOnly = false;
    QString m_rowSql;

    std::vector<qint64> m_keyset;
    std::vector<qint64> m_view;
    QString m_filter;
    std::optional<Criterion> m_criterion;
    long m_pos = -1;                         // -1 before the first row, size() after the last
    bool m_onGap = false;                    // the current row was deleted; m_pos is its successor

    bool m_rowLoaded = false;
    std::vector<Value> m_row;
    // Rows read ahead in view order, so a sweep over thousands of rows takes one statement per
    // block instead of one per row. Dropped when a sweep starts again and when another user of
    // the connection writes the table; kept up to date by this recordset's own writes.
    std::unordered_map<qint64, std::vector<Value>> m_ahead;
    Edit m_edit = Edit::None;
    std::map<int, Value> m_pending;

    const Database::Counts* m_counts = nullptr;
    std::map<std::vector<int>, Statement*> m_updates;   // by the columns an Update writes
    quint64 m_seenWrites = 0;
    quint64 m_seenDeletions = 0;
};

} // namespace steplets::sqlcipher
