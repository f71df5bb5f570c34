#include "SqlCipherCommand.h"
#include "Database.h"
#include "QueryText.h"
#include "SqlCipherConnection.h"
#include "StoreErrors.h"

namespace steplets::sqlcipher {

void SqlCipherCommand::CommandType(int type)
{
    if (type != ado::adCmdText && type != ado::adCmdUnspecified)
        throw badArguments(QStringLiteral("only text commands are supported"), src::Command);
    m_type = type;
}

void SqlCipherCommand::Execute(int)
{
    if (!m_connection) throw objectClosed(src::Command);
    auto db = databaseOf(m_connection, src::Command);
    if (m_text.trimmed().isEmpty()) throw badArguments(QStringLiteral("the command has no text"), src::Command);
    // Prepared statements are kept by the database either way; the flag changes nothing here.
    Statement& st = db->prepare(toEngineSql(m_text), m_text);
    st.run();
    st.reset();
    const WrittenTable written = writtenTable(m_text);
    if (!written.table.isEmpty()) db->noteWrite(written.table, written.deletion);
}

} // namespace steplets::sqlcipher
