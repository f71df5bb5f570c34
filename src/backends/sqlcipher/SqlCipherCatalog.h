#pragma once
// The catalog of a connection: its tables, and of a linked table the provider string that says
// where the table lies. Linked tables are rows of the link table of the database.
#include "platform/StoreGateway.h"

namespace steplets::sqlcipher {

class Database;

// The table that records linked tables: (TableName, ProviderString).
QString linkTableName();
// The name of the one property of a table that the system writes.
QString linkProviderProperty();

class SqlCipherCatalog : public Catalog {
public:
    void ActiveConnection(const std::shared_ptr<Connection>& connection) override;
    std::shared_ptr<CatalogTable> Tables(const QString& name) override;

private:
    std::shared_ptr<Database> m_db;
};

} // namespace steplets::sqlcipher
