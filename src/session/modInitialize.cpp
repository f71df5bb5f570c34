#include "modInitialize.h"
#include "SessionContext.h"
#include "platform/Guard.h"
#include "platform/SettingsGateway.h"
#include "platform/StoreGateway.h"

namespace steplets::modInitialize {

namespace {
// A 16-bit setting: a stored number outside its range is an overflow that names the setting and
// the file, not the run-time's bare "Overflow".
Int16 shortSetting(SettingsGateway& reg, SettingsKey& key, const QString& name, long defaultValue)
{
    const long n = reg.ReadNumber(key, name, defaultValue);
    if (n < -32768 || n > 32767)
        throw Failure(Failure::overflow().number(),
                      QStringLiteral("The setting \"%1\" in %2 holds %3, which is outside its range (-32768 to 32767).")
                          .arg(name, key.where())
                          .arg(n));
    return Int16(static_cast<std::int16_t>(n));
}
} // namespace

bool GetRegSettings()
{
    Guard g(QStringLiteral("modInitialize: GetRegSettings"));
    SessionContext& s = session();
    return g.orElse(false, [&] {
        g(20); s.settingsKey = s.settings().OpenKey(kRootPath, kKeyName);
        SettingsGateway& reg = s.settings();
        SettingsKey& key = *s.settingsKey;
        g(30); s.iTaskSelection = shortSetting(reg, key, QStringLiteral("Task Selection"), 1);
        g(40); s.iLinkUser = shortSetting(reg, key, QStringLiteral("Link User"), 0);
        g(50); s.iLinkUserIfNoContact = shortSetting(reg, key, QStringLiteral("Link User if no Contact"), 0);
        g(60); s.bIntroduction = reg.ReadNumber(key, QStringLiteral("Introduction"), 1) != 0;
        g(70); s.bNewTaskDescription = reg.ReadNumber(key, QStringLiteral("New Task Description"), 1) != 0;
        g(80); s.sDefaultFillIn[1] = reg.ReadText(key, QStringLiteral("Fill-In 1"), QStringLiteral("Subject field from template"));
        g(90); s.sDefaultFillIn[2] = reg.ReadText(key, QStringLiteral("Fill-In 2"), QStringLiteral("[Empty]"));
        g(100); s.sDefaultFillIn[3] = reg.ReadText(key, QStringLiteral("Fill-In 3"), QStringLiteral("[Empty]"));
        g(110); s.sDefaultFillIn[4] = reg.ReadText(key, QStringLiteral("Fill-In 4"), QStringLiteral("[Empty]"));
        g(120); s.sDefaultUserPrompt[1] = reg.ReadText(key, QStringLiteral("User Prompt 1"), QString());
        g(130); s.sDefaultUserPrompt[2] = reg.ReadText(key, QStringLiteral("User Prompt 2"), QString());
        g(140); s.sDefaultUserPrompt[3] = reg.ReadText(key, QStringLiteral("User Prompt 3"), QString());
        g(150); s.sDefaultUserPrompt[4] = reg.ReadText(key, QStringLiteral("User Prompt 4"), QString());
        g(160); const QString stored = reg.ReadText(key, QStringLiteral("Program Directory"), QString());
        g(170); const QString here = s.ports.componentDirectory;
        g(180); if (stored != here) reg.WriteText(key, QStringLiteral("Program Directory"), here);
        g(190); s.settingsKey.reset();
        return true;
    });
}

bool OpenDB()
{
    Guard g(QStringLiteral("modInitialize: OpenDB"));
    SessionContext& s = session();
    return g.orElse(false, [&] {
        const QString dir = s.ports.componentDirectory;
        g(20); s.cnLocal = s.store().CreateConnection();
        g(30); s.cnLink = s.store().CreateConnection();
        g(40); s.cnLocal->Open(storeFiles::localConnectionString(dir), QString(), QString(), -1);
        g(50); s.cnLink->Open(storeFiles::linkConnectionString(dir), QString(), QString(), -1);
        g(60); if (!s.sProvider.isEmpty()) RefreshLinks(s.sProvider);
        g(70); s.rsTemplates = s.store().CreateRecordset();
        g(80); s.rsContacts = s.store().CreateRecordset();
        g(90); s.rsGroups = s.store().CreateRecordset();
        g(100); s.rsAssignments = s.store().CreateRecordset();
        g(110); s.rsTemplates->Open(QStringLiteral("SELECT * FROM tblSteplets"), s.cnLocal, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdText);
        g(120); s.rsContacts->Open(s.bSelectContactByAcct
                                       ? QStringLiteral("SELECT * FROM tblContacts WHERE Active=True ORDER BY ContactAccount")
                                       : QStringLiteral("SELECT * FROM tblContacts WHERE Active=True ORDER BY ContactName"),
                                   s.cnLink, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdText);
        g(130); s.rsGroups->Open(QStringLiteral("SELECT * FROM tblTaskGroups"), s.cnLocal, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdText);
        g(140); s.rsAssignments->Open(QStringLiteral("SELECT * FROM tblGroupAssignments"), s.cnLocal, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdText);
        Recordset& rs = *s.rsTemplates;
        g(150); if (!(rs.BOF() && rs.EOF_()) && rs.RecordCount() != 0) {
            g(160); rs.MoveFirst();
            g(170); const Int16 count = Int16::from(static_cast<long long>(rs.RecordCount()));
            for (Int16 i(1); i <= count; ++i) {
                g(180); rs.Fields(QStringLiteral("Tag")).setValue(Int16(0));
                g(190); rs.Update();
                g(200); rs.MoveNext();
            }
        }
        g(210); return true;
    });
}

void RefreshLinks(QString& sProvider)
{
    Guard g(QStringLiteral("modInitialize: RefreshLinks"));
    std::shared_ptr<Catalog> catalog;
    std::shared_ptr<CatalogTable> table;
    g.step(20, [&] { catalog = session().store().CreateCatalog(); });
    g.step(30, [&] { must(catalog).ActiveConnection(session().cnLink); });
    g.step(40, [&] { table = must(catalog).Tables(QStringLiteral("tblAdminOptions")); });
    g.step(50, [&] { must(must(table).Properties(QStringLiteral("Jet OLEDB:Link Provider String"))).setValue(sProvider); });
    g.step(60, [&] { catalog.reset(); });
    g.step(70, [&] { table.reset(); });
}

} // namespace steplets::modInitialize
