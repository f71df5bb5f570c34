#pragma once
// The failures of the store, with the numbers and texts the data-access layer gives them, and
// descriptions that say which file, table or query is at fault.
#include "platform/runtime/Failure.h"
#include <QString>

namespace steplets::sqlcipher {

namespace errc {
constexpr long BadArguments = 3001;
constexpr long NoCurrentRecord = 3021;
constexpr long ReadOnly = 3251;
constexpr long ItemNotFound = 3265;
constexpr long ObjectClosed = 3704;
constexpr long ObjectOpen = 3705;
constexpr long FileNotFound = -2147467259;
constexpr long EngineFailure = -2147467259;
constexpr long NotValidPassword = -2147217843;
constexpr long TableNotFound = -2147217865;
constexpr long SyntaxError = -2147217900;
constexpr long UnknownColumn = -2147217904;
}

namespace src {
inline const QString Recordset = QStringLiteral("ADODB.Recordset");
inline const QString Field = QStringLiteral("ADODB.Field");
inline const QString Connection = QStringLiteral("ADODB.Connection");
inline const QString Command = QStringLiteral("ADODB.Command");
inline const QString Catalog = QStringLiteral("ADOX.Catalog");
inline const QString Engine = QStringLiteral("Microsoft JET Database Engine");
}

Failure noCurrentRecord(const QString& source = src::Recordset);
Failure itemNotFound(const QString& what, const QString& source);
Failure readOnly();
Failure badArguments(const QString& detail, const QString& source = src::Recordset);
Failure objectClosed(const QString& source);
Failure objectOpen(const QString& source);
Failure fileNotFound(const QString& path);
Failure notValidPassword(const QString& path);
Failure tableNotFound(const QString& table);
Failure notUnderstood(const QString& query, const QString& why);
Failure unknownColumn(const QString& column, const QString& table);
// A failure of the database engine: a sentence for the user (the file and what went wrong),
// then, on a line of its own, the technical details that only the log needs.
Failure engineFailure(const QString& sentence, const QString& technical = {});
// A database file that is there but empty, as an interrupted creation leaves it.
Failure emptyDatabase(const QString& path);

} // namespace steplets::sqlcipher
