#pragma once
// A connection: the database named by "Data Source" of the connection string, keyed with its
// "Jet OLEDB:Database Password".
#include "Database.h"
#include "platform/StoreGateway.h"
#include <memory>

namespace steplets::sqlcipher {

class SqlCipherConnection : public Connection {
public:
    void Open(const QString& connectionString, const QString& userId, const QString& password,
              long options) override;
    void Close() override;
    int State() const override;

    // The open database; failure 3704 when the connection is closed.
    std::shared_ptr<Database> database(const QString& source) const;
    // How long a write waits for another program's lock on the database before it fails
    // (five seconds unless set); kept for the next Open too.
    void setBusyTimeout(int milliseconds);

private:
    std::shared_ptr<Database> m_db;
    int m_busyTimeout = 5000;
};

// Opens (or creates) the database that a connection string names, with its password.
std::shared_ptr<Database> openDatabase(const QString& connectionString, OpenMode mode = OpenMode::ReadWrite);
// One part of a connection string ("Data Source", "Jet OLEDB:Database Password"), or empty.
QString connectionPart(const QString& connectionString, const QString& key);

// The open database behind a connection of this backend; anything else is failure 3001.
std::shared_ptr<Database> databaseOf(const std::shared_ptr<Connection>& connection, const QString& source);

} // namespace steplets::sqlcipher
