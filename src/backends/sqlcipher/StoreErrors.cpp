#include "StoreErrors.h"
#include <QDir>
#include <QFileInfo>

namespace steplets::sqlcipher {

Failure noCurrentRecord(const QString& source)
{
    return Failure(errc::NoCurrentRecord,
                   QStringLiteral("Either BOF or EOF is True, or the current record has been deleted. "
                                  "Requested operation requires a current record."),
                   source);
}

Failure itemNotFound(const QString& what, const QString& source)
{
    return Failure(errc::ItemNotFound,
                   QStringLiteral("Item cannot be found in the collection corresponding to the requested name or "
                                  "ordinal. (%1)").arg(what),
                   source);
}

Failure readOnly()
{
    return Failure(errc::ReadOnly,
                   QStringLiteral("Current Recordset does not support updating. This may be a limitation of the "
                                  "provider, or of the selected locktype."),
                   src::Recordset);
}

Failure badArguments(const QString& detail, const QString& source)
{
    return Failure(errc::BadArguments,
                   QStringLiteral("Arguments are of the wrong type, are out of acceptable range, or are in "
                                  "conflict with one another. (%1)").arg(detail),
                   source);
}

Failure objectClosed(const QString& source)
{
    return Failure(errc::ObjectClosed, QStringLiteral("Operation is not allowed when the object is closed."), source);
}

Failure objectOpen(const QString& source)
{
    return Failure(errc::ObjectOpen, QStringLiteral("Operation is not allowed when the object is open."), source);
}

Failure fileNotFound(const QString& path)
{
    return Failure(errc::FileNotFound,
                   QStringLiteral("The database file %1 was not found. Create the databases with "
                                  "'steplets-admin init'.").arg(QDir::toNativeSeparators(path)),
                   src::Engine);
}

Failure notValidPassword(const QString& path)
{
    return Failure(errc::NotValidPassword,
                   QStringLiteral("Not a valid password, or not a database: %1 cannot be opened with the "
                                  "component's password.").arg(QDir::toNativeSeparators(path)),
                   src::Engine);
}

Failure tableNotFound(const QString& table)
{
    return Failure(errc::TableNotFound,
                   QStringLiteral("The database engine cannot find the input table or query '%1'. Make sure it "
                                  "exists and that its name is spelled correctly.").arg(table),
                   src::Engine);
}

Failure notUnderstood(const QString& query, const QString& why)
{
    return Failure(errc::SyntaxError, QStringLiteral("The query \"%1\" cannot be run: %2.").arg(query, why),
                   src::Engine);
}

Failure unknownColumn(const QString& column, const QString& table)
{
    return Failure(errc::UnknownColumn,
                   QStringLiteral("The table '%1' has no column '%2'.").arg(table, column), src::Engine);
}

Failure engineFailure(const QString& sentence, const QString& technical)
{
    return Failure(errc::EngineFailure, technical.isEmpty() ? sentence : sentence + QLatin1Char('\n') + technical, src::Engine);
}

Failure emptyDatabase(const QString& path)
{
    return Failure(errc::EngineFailure,
                   QStringLiteral("The database file %1 is empty: it is no database, as its creation was not finished. "
                                  "Repair it with 'steplets-admin init'.").arg(QDir::toNativeSeparators(path)),
                   src::Engine);
}

} // namespace steplets::sqlcipher
