#include "SqlCipherRecordset.h"
#include "SqlCipherConnection.h"
#include "StoreErrors.h"
#include <QRegularExpression>
#include <algorithm>
#include <unordered_set>

namespace steplets::sqlcipher {

namespace {
int indexOfName(const QList<ColumnInfo>& columns, const QString& name)
{
    for (int i = 0; i < columns.size(); ++i)
        if (columns[i].name.compare(name, Qt::CaseInsensitive) == 0) return i;
    return -1;
}

QString columnList(const QList<ColumnInfo>& columns)
{
    QStringList names;
    for (const ColumnInfo& c : columns) names << quoted(c.name);
    return names.join(QLatin1Char(','));
}
} // namespace

// --- opening and the keyset --------------------------------------------------------------------

void SqlCipherRecordset::Open(const QString& source, const std::shared_ptr<Connection>& connection,
                              int, int lockType, int options)
{
    if (State() == ado::adStateOpen) throw objectOpen(src::Recordset);
    auto database = databaseOf(connection, src::Recordset);
    SelectQuery query = parseSelect(source, options);
    const QList<ColumnInfo>& all = database->columns(query.table);
    QList<ColumnInfo> chosen;
    for (const QString& name : query.columns) {
        const int i = indexOfName(all, name);
        if (i < 0) throw unknownColumn(name, query.table);
        chosen << all[i];
    }
    if (query.columns.isEmpty()) chosen = all;

    m_db = std::move(database);
    m_updates.clear();
    m_source = source;
    m_query = std::move(query);
    m_columns = chosen;
    m_keyColumn = -1;
    for (int i = 0; i < m_columns.size(); ++i)
        if (m_columns[i].rowKey) m_keyColumn = i;
    m_readOnly = lockType == ado::adLockReadOnly;
    m_rowSql = QStringLiteral("SELECT ") + columnList(m_columns) + QStringLiteral(" FROM ") + quoted(m_query.table)
        + QStringLiteral(" WHERE rowid=?");
    m_filter.clear();
    m_criterion.reset();
    m_edit = Edit::None;
    m_pending.clear();
    try {
        loadKeyset();
    } catch (...) {
        m_db.reset();
        throw;
    }
    applyFilter();
    toFirst();
}

void SqlCipherRecordset::loadKeyset()
{
    static const QRegularExpression term(QStringLiteral("^(\\[[^\\]]+\\]|\\w+)(?:\\s+(ASC|DESC))?$"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QList<ColumnInfo>& all = m_db->columns(m_query.table);
    QStringList order;
    for (const QString& t : m_query.orderBy) {
        const auto m = term.match(t);
        QString name = m.captured(1);
        if (name.startsWith(QLatin1Char('['))) name = name.mid(1, name.size() - 2);
        const int i = m.hasMatch() ? indexOfName(all, name) : -1;
        if (i < 0) throw notUnderstood(m_source, QStringLiteral("cannot sort by '%1'").arg(t));
        // Text sorts as a person reads it: without regard to case.
        const QString collate = all[i].kind == ColumnKind::Text ? QStringLiteral(" COLLATE NOCASE") : QString();
        order << quoted(all[i].name) + collate + QLatin1Char(' ') + (m.captured(2).isEmpty() ? QStringLiteral("ASC") : m.captured(2).toUpper());
    }
    order << QStringLiteral("rowid");
    QString sql = QStringLiteral("SELECT rowid FROM ") + quoted(m_query.table);
    if (!m_query.where.isEmpty()) sql += QStringLiteral(" WHERE ") + m_query.where;
    sql += QStringLiteral(" ORDER BY ") + order.join(QStringLiteral(", "));
    Statement& st = m_db->prepare(sql, m_source);
    std::vector<qint64> keys;
    while (st.step()) keys.push_back(st.key(0));
    st.reset();
    m_keyset = std::move(keys);
    m_counts = &m_db->counts(m_query.table);
    m_seenWrites = m_counts->writes;
    m_seenDeletions = m_counts->deletions;
    m_rowLoaded = false;
}

void SqlCipherRecordset::applyFilter()
{
    if (!m_criterion) {
        m_view = m_keyset;
        return;
    }
    const int column = indexOfName(m_columns, m_criterion->column);
    const ColumnInfo& info = m_columns[column];
    const Value& v = m_criterion->value;
    m_view.clear();
    if (info.rowKey && !v.isNull()) {
        const qint64 key = v.toLong();
        if (std::find(m_keyset.begin(), m_keyset.end(), key) != m_keyset.end()) m_view.push_back(key);
        return;
    }
    QString test;
    if (v.isNull()) test = QStringLiteral(" IS NULL");
    // Booleans written by others may hold any non-zero number for True.
    else if (info.kind == ColumnKind::Bool) test = v.toBool() ? QStringLiteral(" <> 0") : QStringLiteral(" = 0");
    else test = QStringLiteral(" = ?");
    Statement& st = m_db->prepare(QStringLiteral("SELECT rowid FROM ") + quoted(m_query.table) + QStringLiteral(" WHERE ")
                                  + quoted(info.name) + test);
    if (test == QLatin1String(" = ?")) st.bind(1, v);
    std::unordered_set<qint64> matches;
    while (st.step()) matches.insert(st.key(0));
    st.reset();
    for (qint64 key : m_keyset)
        if (matches.count(key)) m_view.push_back(key);
}

void SqlCipherRecordset::toFirst()
{
    m_ahead.clear();
    m_pos = 0;
    m_onGap = false;
    m_rowLoaded = false;
}

void SqlCipherRecordset::Close()
{
    if (State() != ado::adStateOpen) throw objectClosed(src::Recordset);
    m_db.reset();
    m_keyset.clear();
    m_view.clear();
    m_pending.clear();
    m_edit = Edit::None;
}

int SqlCipherRecordset::State() const
{
    return m_db && m_db->isOpen() ? ado::adStateOpen : ado::adStateClosed;
}

Database& SqlCipherRecordset::db(const QString& source)
{
    if (!m_db || !m_db->isOpen()) throw objectClosed(source);
    return *m_db;
}

// Rows deleted through another recordset of the connection leave this keyset too; a current
// row among them becomes a gap, as if deleted here.
void SqlCipherRecordset::catchUp()
{
    Database& d = db();
    if (m_counts->writes == m_seenWrites) return;
    m_rowLoaded = false;
    m_ahead.clear();
    if (m_counts->deletions != m_seenDeletions) {
        std::unordered_set<qint64> alive;
        Statement& st = d.prepare(QStringLiteral("SELECT rowid FROM ") + quoted(m_query.table));
        while (st.step()) alive.insert(st.key(0));
        st.reset();
        std::vector<qint64> view;
        long pos = m_pos;
        for (long i = 0; i < static_cast<long>(m_view.size()); ++i) {
            if (alive.count(m_view[i])) { view.push_back(m_view[i]); continue; }
            if (i < m_pos) --pos;
            if (i == m_pos) m_onGap = true;
        }
        m_view = std::move(view);
        m_pos = pos;
        std::erase_if(m_keyset, [&](qint64 k) { return !alive.count(k); });
    }
    m_seenWrites = m_counts->writes;
    m_seenDeletions = m_counts->deletions;
}

void SqlCipherRecordset::noteOwnWrite(bool deletion)
{
    m_db->noteWrite(m_query.table, deletion);
    m_seenWrites = m_counts->writes;
    m_seenDeletions = m_counts->deletions;
}

// --- position ----------------------------------------------------------------------------------

bool SqlCipherRecordset::hasCurrent() const
{
    return !m_onGap && m_pos >= 0 && m_pos < static_cast<long>(m_view.size());
}

qint64 SqlCipherRecordset::currentKey() const
{
    if (!hasCurrent()) throw noCurrentRecord();
    return m_view[m_pos];
}

bool SqlCipherRecordset::BOF()
{
    catchUp();
    return m_view.empty() || m_pos < 0;
}

bool SqlCipherRecordset::EOF_()
{
    catchUp();
    return m_view.empty() || m_pos >= static_cast<long>(m_view.size());
}

long SqlCipherRecordset::RecordCount()
{
    catchUp();
    return static_cast<long>(m_view.size());
}

void SqlCipherRecordset::commitPending()
{
    if (m_edit != Edit::None) Update();
}

void SqlCipherRecordset::dropPending()
{
    if (m_edit == Edit::Adding) m_rowLoaded = false;
    m_edit = Edit::None;
    m_pending.clear();
}

void SqlCipherRecordset::MoveFirst()
{
    catchUp();
    commitPending();
    // An empty set has no first row to go to, whatever the cursor.
    if (m_view.empty()) throw noCurrentRecord();
    toFirst();
}

void SqlCipherRecordset::MoveNext()
{
    catchUp();
    commitPending();
    m_rowLoaded = false;
    if (m_onGap) {
        m_onGap = false;
        return;
    }
    if (m_pos >= static_cast<long>(m_view.size())) throw noCurrentRecord();
    ++m_pos;
}

void SqlCipherRecordset::Move(long rows)
{
    catchUp();
    commitPending();
    const long size = static_cast<long>(m_view.size());
    long target;
    if (m_onGap) {
        // The gap lies just before m_pos.
        if (rows == 0) throw noCurrentRecord();
        target = rows > 0 ? m_pos + rows - 1 : m_pos + rows;
    } else {
        if ((m_pos < 0 && rows < 0) || (m_pos >= size && rows > 0)) throw noCurrentRecord();
        target = m_pos + rows;
    }
    m_pos = std::clamp(target, -1L, size);
    m_onGap = false;
    m_rowLoaded = false;
}

// --- editing -----------------------------------------------------------------------------------

void SqlCipherRecordset::AddNew()
{
    catchUp();
    if (m_readOnly) throw readOnly();
    commitPending();
    m_edit = Edit::Adding;
    m_pending.clear();
}

void SqlCipherRecordset::Update()
{
    catchUp();
    if (m_edit == Edit::Adding) insertPending();
    else if (m_edit == Edit::Editing) updatePending();
    else currentKey();
}

void SqlCipherRecordset::insertPending()
{
    QStringList names, marks;
    for (const auto& [index, value] : m_pending) {
        names << quoted(m_columns[index].name);
        marks << QStringLiteral("?");
    }
    const QString sql = names.isEmpty()
        ? QStringLiteral("INSERT INTO ") + quoted(m_query.table) + QStringLiteral(" DEFAULT VALUES")
        : QStringLiteral("INSERT INTO ") + quoted(m_query.table) + QStringLiteral(" (") + names.join(QLatin1Char(','))
            + QStringLiteral(") VALUES (") + marks.join(QLatin1Char(',')) + QLatin1Char(')');
    Statement& st = m_db->prepare(sql);
    int n = 1;
    for (const auto& [index, value] : m_pending) st.bind(n++, value);
    st.run();
    const qint64 key = m_db->lastInsertKey();
    m_ahead.erase(key);                      // a table without its own key may give a rowid again
    m_keyset.push_back(key);
    m_view.push_back(key);
    m_pos = static_cast<long>(m_view.size()) - 1;
    m_onGap = false;
    m_rowLoaded = false;
    m_edit = Edit::None;
    m_pending.clear();
    noteOwnWrite(false);
}

void SqlCipherRecordset::updatePending()
{
    const qint64 key = currentKey();
    // A row that already holds what is written needs no statement at all.
    const std::vector<Value>& now = currentRow();
    if (std::all_of(m_pending.begin(), m_pending.end(), [&](const auto& p) { return now[p.first] == p.second; })) {
        m_edit = Edit::None;
        m_pending.clear();
        return;
    }
    Statement& st = updateStatement();
    int n = 1;
    for (const auto& [index, value] : m_pending) st.bind(n++, value);
    st.bindKey(n, key);
    st.run();
    const bool changed = m_db->changes() > 0;
    if (m_rowLoaded)
        for (const auto& [index, value] : m_pending) m_row[index] = value;
    if (auto ahead = m_ahead.find(key); ahead != m_ahead.end())
        for (const auto& [index, value] : m_pending) ahead->second[index] = value;
    m_edit = Edit::None;
    m_pending.clear();
    if (changed) noteOwnWrite(false);
}

// Rows whose values are already those written are left alone: nothing needs to reach the
// disk, and a loop of Updates over mostly unchanged rows (the reset of the marks) stays quick.
Statement& SqlCipherRecordset::updateStatement()
{
    std::vector<int> columns;
    for (const auto& [index, value] : m_pending) columns.push_back(index);
    auto it = m_updates.find(columns);
    if (it != m_updates.end()) return it->second->reset();
    QStringList sets, differs;
    int n = 1;
    for (int index : columns) {
        const QString name = quoted(m_columns[index].name);
        sets << name + QStringLiteral("=?") + QString::number(n);
        differs << name + QStringLiteral(" IS NOT ?") + QString::number(n);
        ++n;
    }
    Statement& st = m_db->prepare(QStringLiteral("UPDATE ") + quoted(m_query.table) + QStringLiteral(" SET ")
                                  + sets.join(QLatin1Char(',')) + QStringLiteral(" WHERE rowid=?") + QString::number(n)
                                  + QStringLiteral(" AND (") + differs.join(QStringLiteral(" OR ")) + QLatin1Char(')'));
    m_updates.emplace(std::move(columns), &st);
    return st;
}

void SqlCipherRecordset::Delete()
{
    catchUp();
    if (m_readOnly) throw readOnly();
    const Edit was = m_edit;
    m_edit = Edit::None;
    m_pending.clear();
    if (was == Edit::Adding) return;
    if (m_pos < 0 || m_pos >= static_cast<long>(m_view.size())) throw noCurrentRecord();
    const qint64 key = m_view[m_pos];
    Statement& st = m_db->prepare(QStringLiteral("DELETE FROM ") + quoted(m_query.table) + QStringLiteral(" WHERE rowid=?"));
    st.bindKey(1, key);
    st.run();
    m_ahead.erase(key);
    m_view.erase(m_view.begin() + m_pos);
    dropKey(key);
    m_onGap = true;
    m_rowLoaded = false;
    noteOwnWrite(true);
}

void SqlCipherRecordset::dropKey(qint64 key)
{
    auto it = std::find(m_keyset.begin(), m_keyset.end(), key);
    if (it != m_keyset.end()) m_keyset.erase(it);
}

void SqlCipherRecordset::Requery()
{
    db();
    dropPending();
    loadKeyset();
    applyFilter();
    toFirst();
}

// --- filter ------------------------------------------------------------------------------------

void SqlCipherRecordset::Filter(const QString& criteria)
{
    if (criteria.trimmed().isEmpty()) {
        Filter(0L);
        return;
    }
    catchUp();
    auto criterion = parseCriterion(criteria);
    if (!criterion) throw badArguments(QStringLiteral("the filter \"%1\" is not of the form Column = value").arg(criteria));
    const int column = indexOfName(m_columns, criterion->column);
    if (column < 0) throw itemNotFound(criterion->column, src::Recordset);
    try {
        criterion->value = toColumnType(criterion->value, m_columns[column].kind);
    } catch (const Failure&) {
        throw badArguments(QStringLiteral("the value of the filter \"%1\" does not suit the column").arg(criteria));
    }
    dropPending();
    m_filter = criteria;
    m_criterion = std::move(criterion);
    applyFilter();
    toFirst();
}

void SqlCipherRecordset::Filter(long none)
{
    if (none != 0) throw badArguments(QStringLiteral("a filter number other than 0"));
    catchUp();
    dropPending();
    m_filter.clear();
    m_criterion.reset();
    applyFilter();
    toFirst();
}

// --- fields ------------------------------------------------------------------------------------

int SqlCipherRecordset::FieldCount() const { return static_cast<int>(m_columns.size()); }

QString SqlCipherRecordset::fieldName(int index) const { return m_columns.value(index).name; }

int SqlCipherRecordset::fieldIndex(const QString& name) const
{
    for (int i = static_cast<int>(m_columns.size()) - 1; i >= 0; --i)
        if (m_columns[i].name == name) return i;
    const int i = indexOfName(m_columns, name);
    if (i < 0) throw itemNotFound(name, src::Field);
    return i;
}

int SqlCipherRecordset::checkedIndex(int position) const
{
    if (position < 0 || position >= m_columns.size()) throw itemNotFound(QString::number(position), src::Field);
    return position;
}

const std::vector<Value>& SqlCipherRecordset::currentRow()
{
    const qint64 key = currentKey();
    if (m_rowLoaded) return m_row;
    auto it = m_ahead.find(key);
    if (it == m_ahead.end()) {
        readAhead();
        it = m_ahead.find(key);
        if (it == m_ahead.end()) throw noCurrentRecord(src::Field);
    }
    m_row = it->second;
    m_rowLoaded = true;
    return m_row;
}

void SqlCipherRecordset::readAhead()
{
    constexpr long kBlock = 128;
    m_ahead.clear();
    const long end = std::min<long>(static_cast<long>(m_view.size()), m_pos + kBlock);
    QStringList marks;
    for (long i = m_pos; i < end; ++i) marks << QStringLiteral("?");
    Statement& st = m_db->prepare(QStringLiteral("SELECT rowid,") + m_rowSql.mid(7).replace(QStringLiteral("WHERE rowid=?"),
                                  QStringLiteral("WHERE rowid IN (") + marks.join(QLatin1Char(',')) + QLatin1Char(')')));
    for (long i = m_pos; i < end; ++i) st.bindKey(static_cast<int>(i - m_pos + 1), m_view[i]);
    while (st.step()) {
        std::vector<Value> row(m_columns.size());
        for (int i = 0; i < m_columns.size(); ++i) row[i] = st.value(i + 1, m_columns[i].kind);
        m_ahead.emplace(st.key(0), std::move(row));
    }
    st.reset();
}

Value SqlCipherRecordset::fieldValue(int index)
{
    checkedIndex(index);
    catchUp();
    if (m_edit != Edit::None) {
        auto it = m_pending.find(index);
        if (it != m_pending.end()) return it->second;
        if (m_edit == Edit::Adding) return Value();
    }
    if (!hasCurrent()) throw noCurrentRecord(src::Field);
    return currentRow()[index];
}

void SqlCipherRecordset::setFieldValue(int index, const Value& v)
{
    checkedIndex(index);
    catchUp();
    if (m_readOnly) throw readOnly();
    if (m_edit != Edit::Adding) {
        if (!hasCurrent()) throw noCurrentRecord(src::Field);
        if (index == m_keyColumn) throw badArguments(QStringLiteral("the key column cannot be changed"), src::Field);
    }
    Value converted = toColumnType(v, m_columns[index].kind);
    if (m_edit == Edit::None) m_edit = Edit::Editing;
    m_pending[index] = std::move(converted);
}

} // namespace steplets::sqlcipher
