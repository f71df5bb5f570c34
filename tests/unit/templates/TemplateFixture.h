#pragma once
// Real stores for the template engine: a fresh pair of SQLCipher databases with the shared
// template recordset open on tblSteplets, a vdir with a task and a contact collection (the demo
// contacts in it), the session pointing at both, a recording failure sink on the session's trail
// and a clock that stands where the test puts it.
#include "RecordingSink.h"
#include "TempDir.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/SqlCipherStore.h"
#include "backends/vdir/DemoContacts.h"
#include "backends/vdir/VdirStore.h"
#include "platform/OutlookGateway.h"
#include "platform/StoreGateway.h"
#include "session/SessionContext.h"
#include "templates/DateRules.h"
#include "templates/EditedTemplate.h"
#include "templates/TemplateRow.h"
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <map>

namespace steplets::test {

// Nobody looks at the screen in these tests: an item shown is left as it is.
class NoDisplay : public ol::ItemDisplay {
public:
    void displayTask(ol::TaskItem&, bool) override {}
    void displayContact(ol::ContactItem&, bool) override {}
};

// A template row as a test states it: column position to value; the rest stays Null.
using RowValues = std::map<int, Value>;

class TemplateFixture : public ::testing::Test {
protected:
    // `display` shows the items: nobody by default.
    explicit TemplateFixture(std::shared_ptr<ol::ItemDisplay> display = std::make_shared<NoDisplay>())
    {
        QDir().mkpath(vdirRoot() + QStringLiteral("/tasks"));
        vdir::writeDemoContacts(vdirRoot() + QStringLiteral("/contacts"));
        vdir::VdirConfig config;
        config.root = vdirRoot();
        config.clock = [this] { return moment; };
        app = vdir::openVdirStore(config, std::move(display));

        sqlcipher::createDatabases(tmp.path());
        SessionContext& s = session();
        s = SessionContext();
        s.olApp = app;
        s.olNS = app->GetNamespace(QStringLiteral("MAPI"));
        s.sTaskFolderEID = QStringLiteral("tasks");
        s.sTaskFolderSID = QStringLiteral("store");
        s.cnLocal = db.CreateConnection();
        s.cnLocal->Open(storeFiles::localConnectionString(tmp.path()));
        s.rsTemplates = openTemplates();
        modTasks::ReSetModuleVariables();
        sink.failures.clear();
    }
    ~TemplateFixture() override
    {
        modTasks::ReSetModuleVariables();
        session() = SessionContext();
    }

    QString vdirRoot() const { return tmp.file(QStringLiteral("vdir")); }

    // A recordset of its own on tblSteplets, as another reader of the file sees it.
    std::shared_ptr<Recordset> openTemplates()
    {
        auto rs = db.CreateRecordset();
        rs->Open(QStringLiteral("SELECT * FROM tblSteplets"), session().cnLocal, ado::adOpenKeyset,
                 ado::adLockOptimistic, ado::adCmdText);
        return rs;
    }
    // Adds a row through the shared recordset and leaves it current.
    void addRow(const RowValues& values)
    {
        Recordset& rs = *session().rsTemplates;
        rs.AddNew();
        for (const auto& [pos, v] : values) rs.Fields(pos).setValue(v);
        rs.Update();
    }
    // The only row of the table, read afresh through a recordset of its own.
    Value stored(int pos)
    {
        auto rs = openTemplates();
        EXPECT_EQ(rs->RecordCount(), 1);
        rs->MoveFirst();
        return rs->Fields(pos).value();
    }

    std::shared_ptr<ol::MAPIFolder> taskFolder()
    {
        return session().olNS->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"));
    }
    std::shared_ptr<ol::ContactItem> contact(const QString& entryId)
    {
        return ol::asContact(session().olNS->GetItemFromID(entryId, QStringLiteral("store")));
    }
    int taskFiles() const
    {
        return QDir(vdirRoot() + QStringLiteral("/tasks")).entryList({QStringLiteral("*.ics")}, QDir::Files).size();
    }
    modTasks::Clock clock()
    {
        return [this] { return moment; };
    }

    TempDir tmp;
    Date moment = Date::fromParts(2024, 3, 14, 15, 30);
    sqlcipher::SqlCipherStore db;
    std::shared_ptr<ol::Application> app;
    RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
};

} // namespace steplets::test
