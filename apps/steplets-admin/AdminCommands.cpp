#include "AdminCommands.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/StoreData.h"
#include "backends/vdir/DemoContacts.h"
#include <QDir>
#include <QJsonDocument>

namespace steplets::admin {

void init(const QString& dir, QTextStream& out)
{
    out << "created " << sqlcipher::createDatabases(dir).join(QStringLiteral(" and ")) << '\n';
}

void seedDemo(const QString& dir, QTextStream& out)
{
    QList<sqlcipher::DemoContactRow> rows;
    for (const vdir::DemoContact& c : vdir::demoContacts()) rows << sqlcipher::DemoContactRow{c.entryId, c.fullName(), c.account};
    sqlcipher::seedDemo(dir, rows);
    const QString cards = QDir(dir).filePath(QStringLiteral("vdir/contacts"));
    const int written = vdir::writeDemoContacts(cards);
    out << "added the demo templates, 2 groups and " << rows.size() << " contacts; wrote " << written
        << " contact cards to " << QDir::toNativeSeparators(cards) << '\n';
}

void dump(const QString& dir, QTextStream& out)
{
    out << QJsonDocument(sqlcipher::dumpStore(dir)).toJson(QJsonDocument::Indented);
}

bool check(const QString& dir, QTextStream& out)
{
    const QStringList problems = sqlcipher::checkDatabases(dir);
    for (const QString& p : problems) out << p << '\n';
    if (problems.isEmpty()) out << "ok: both databases in " << QDir::toNativeSeparators(dir) << " are sound\n";
    return problems.isEmpty();
}

} // namespace steplets::admin
