#include "SqlCipherCatalog.h"
#include "Database.h"
#include "SqlCipherConnection.h"
#include "StoreErrors.h"

namespace steplets::sqlcipher {

QString linkTableName() { return QStringLiteral("sysLinkedTables"); }
QString linkProviderProperty() { return QStringLiteral("Jet OLEDB:Link Provider String"); }

namespace {

class ProviderString : public TableProperty {
public:
    ProviderString(std::shared_ptr<Database> db, QString table, bool linked)
        : m_db(std::move(db)), m_table(std::move(table)), m_linked(linked) {}

    Value value() const override
    {
        if (!m_linked) return Value(QString());
        Statement& st = m_db->prepare(QStringLiteral("SELECT ProviderString FROM ") + quoted(linkTableName())
                                      + QStringLiteral(" WHERE TableName=? COLLATE NOCASE"));
        st.bind(1, Value(m_table));
        const Value v = st.step() ? st.value(0, ColumnKind::Text) : Value();
        st.reset();
        return v;
    }

    void setValue(const Value& v) override
    {
        if (!m_linked)
            throw Failure(errc::EngineFailure,
                          QStringLiteral("The table '%1' is not a linked table; it has no link provider string to set.")
                              .arg(m_table),
                          src::Catalog);
        Statement& st = m_db->prepare(QStringLiteral("UPDATE ") + quoted(linkTableName())
                                      + QStringLiteral(" SET ProviderString=? WHERE TableName=? COLLATE NOCASE"));
        st.bind(1, Value(v.textOrEmpty()));
        st.bind(2, Value(m_table));
        st.run();
        m_db->noteWrite(linkTableName(), false);
    }

private:
    std::shared_ptr<Database> m_db;
    QString m_table;
    bool m_linked;
};

class Table : public CatalogTable {
public:
    Table(std::shared_ptr<Database> db, QString name, bool linked)
        : m_db(std::move(db)), m_name(std::move(name)), m_linked(linked) {}
    QString Name() const override { return m_name; }
    std::shared_ptr<TableProperty> Properties(const QString& name) override
    {
        if (name.compare(linkProviderProperty(), Qt::CaseInsensitive) != 0) throw itemNotFound(name, src::Catalog);
        return std::make_shared<ProviderString>(m_db, m_name, m_linked);
    }

private:
    std::shared_ptr<Database> m_db;
    QString m_name;
    bool m_linked;
};

} // namespace

void SqlCipherCatalog::ActiveConnection(const std::shared_ptr<Connection>& connection)
{
    m_db = databaseOf(connection, src::Catalog);
}

std::shared_ptr<CatalogTable> SqlCipherCatalog::Tables(const QString& name)
{
    if (!m_db || !m_db->isOpen()) throw objectClosed(src::Catalog);
    if (m_db->hasTable(linkTableName())) {
        Statement& st = m_db->prepare(QStringLiteral("SELECT TableName FROM ") + quoted(linkTableName())
                                      + QStringLiteral(" WHERE TableName=? COLLATE NOCASE"));
        st.bind(1, Value(name));
        const bool linked = st.step();
        const QString stored = linked ? st.value(0, ColumnKind::Text).toText() : QString();
        st.reset();
        if (linked) return std::make_shared<Table>(m_db, stored, true);
    }
    if (m_db->hasTable(name)) return std::make_shared<Table>(m_db, name, false);
    throw itemNotFound(name, src::Catalog);
}

} // namespace steplets::sqlcipher
