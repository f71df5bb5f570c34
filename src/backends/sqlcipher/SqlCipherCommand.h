#pragma once
// A text command run once on its connection, returning no records.
#include "platform/StoreGateway.h"

namespace steplets::sqlcipher {

class SqlCipherCommand : public Command {
public:
    void ActiveConnection(const std::shared_ptr<Connection>& connection) override { m_connection = connection; }
    void CommandText(const QString& text) override { m_text = text; }
    void CommandType(int type) override;
    void Prepared(bool prepared) override { m_prepared = prepared; }
    void Execute(int options) override;

private:
    std::shared_ptr<Connection> m_connection;
    QString m_text;
    int m_type = ado::adCmdText;
    bool m_prepared = false;
};

} // namespace steplets::sqlcipher
