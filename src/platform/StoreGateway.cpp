#include "StoreGateway.h"

namespace steplets::storeFiles {

namespace {
// The fixed passwords of the two databases, 12 and 20 characters.
const QString kLocalPassword = QStringLiteral("k2Rv9PzQ4dTm");
const QString kLinkPassword = QStringLiteral("p3w(8f!{7mhN4=XqYjRs");

QString connectionString(const QString& directory, const QString& file, const QString& password)
{
    return QStringLiteral("PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=") + directory + QLatin1Char('/') + file
        + QStringLiteral(";Jet OLEDB:Database Password=") + password + QLatin1Char(';');
}
} // namespace

QString localFileName() { return QStringLiteral("OVLocal.db"); }
QString linkFileName() { return QStringLiteral("OVLink.db"); }

QString localConnectionString(const QString& directory)
{
    return connectionString(directory, localFileName(), kLocalPassword);
}

QString linkConnectionString(const QString& directory)
{
    return connectionString(directory, linkFileName(), kLinkPassword);
}

} // namespace steplets::storeFiles
