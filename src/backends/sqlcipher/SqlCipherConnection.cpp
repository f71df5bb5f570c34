#include "SqlCipherConnection.h"
#include "Database.h"
#include "StoreErrors.h"

namespace steplets::sqlcipher {

QString connectionPart(const QString& connectionString, const QString& key)
{
    for (const QString& item : connectionString.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const qsizetype eq = item.indexOf(QLatin1Char('='));
        if (eq > 0 && item.left(eq).trimmed().compare(key, Qt::CaseInsensitive) == 0) return item.mid(eq + 1);
    }
    return {};
}

std::shared_ptr<Database> openDatabase(const QString& connectionString, OpenMode mode)
{
    const QString path = connectionPart(connectionString, QStringLiteral("Data Source")).trimmed();
    if (path.isEmpty()) throw badArguments(QStringLiteral("the connection string names no Data Source"), src::Connection);
    return Database::open(path, connectionPart(connectionString, QStringLiteral("Jet OLEDB:Database Password")), mode);
}

void SqlCipherConnection::Open(const QString& connectionString, const QString&, const QString&, long)
{
    if (m_db && m_db->isOpen()) throw objectOpen(src::Connection);
    m_db = openDatabase(connectionString);
    m_db->setBusyTimeout(m_busyTimeout);
}

void SqlCipherConnection::setBusyTimeout(int milliseconds)
{
    m_busyTimeout = milliseconds;
    if (m_db && m_db->isOpen()) m_db->setBusyTimeout(milliseconds);
}

void SqlCipherConnection::Close()
{
    if (!m_db || !m_db->isOpen()) throw objectClosed(src::Connection);
    m_db->close();
}

int SqlCipherConnection::State() const
{
    return m_db && m_db->isOpen() ? ado::adStateOpen : ado::adStateClosed;
}

std::shared_ptr<Database> SqlCipherConnection::database(const QString& source) const
{
    if (!m_db || !m_db->isOpen()) throw objectClosed(source);
    return m_db;
}

std::shared_ptr<Database> databaseOf(const std::shared_ptr<Connection>& connection, const QString& source)
{
    auto* own = dynamic_cast<SqlCipherConnection*>(connection.get());
    if (!own) throw badArguments(QStringLiteral("the connection is not one of this store"), source);
    return own->database(source);
}

} // namespace steplets::sqlcipher
