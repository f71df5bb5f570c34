#pragma once
// The store port on SQLCipher files: what the composition root hands the component.
#include "platform/StoreGateway.h"

namespace steplets::sqlcipher {

class SqlCipherStore : public StoreGateway {
public:
    std::shared_ptr<Connection> CreateConnection() override;
    std::shared_ptr<Recordset> CreateRecordset() override;
    std::shared_ptr<Command> CreateCommand() override;
    std::shared_ptr<Catalog> CreateCatalog() override;
};

} // namespace steplets::sqlcipher
