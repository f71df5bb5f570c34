#include "DemoData.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/StoreData.h"
#include "backends/vdir/DemoContacts.h"
#include <QDir>

namespace steplets::demo {

void createDatabases(const QString& dir, QTextStream& out)
{
    out << "created " << sqlcipher::createDatabases(dir).join(QStringLiteral(" and ")) << '\n';
}

void seed(const QString& dir, QTextStream& out)
{
    QList<sqlcipher::DemoContactRow> rows;
    for (const vdir::DemoContact& c : vdir::demoContacts()) rows << sqlcipher::DemoContactRow{c.entryId, c.fullName(), c.account};
    sqlcipher::seedDemo(dir, rows);
    const QString cards = QDir(dir).filePath(QStringLiteral("vdir/contacts"));
    const int written = vdir::writeDemoContacts(cards);
    out << "added the demo templates, 2 groups and " << rows.size() << " contacts; wrote " << written
        << " contact cards to " << QDir::toNativeSeparators(cards) << '\n';
}

} // namespace steplets::demo
