#include "SqlCipherStore.h"
#include "SqlCipherCatalog.h"
#include "SqlCipherCommand.h"
#include "SqlCipherConnection.h"
#include "SqlCipherRecordset.h"

namespace steplets::sqlcipher {

std::shared_ptr<Connection> SqlCipherStore::CreateConnection() { return std::make_shared<SqlCipherConnection>(); }
std::shared_ptr<Recordset> SqlCipherStore::CreateRecordset() { return std::make_shared<SqlCipherRecordset>(); }
std::shared_ptr<Command> SqlCipherStore::CreateCommand() { return std::make_shared<SqlCipherCommand>(); }
std::shared_ptr<Catalog> SqlCipherStore::CreateCatalog() { return std::make_shared<SqlCipherCatalog>(); }

} // namespace steplets::sqlcipher
