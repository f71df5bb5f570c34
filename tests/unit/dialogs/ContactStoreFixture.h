#pragma once
// Real contact stores for the contact dialogs: a fresh link database with tblContacts rows, the
// session's contact recordset open on the active rows by name, a vdir contact collection holding
// the demo cards, and a scripted host that plays what the person at the screen does.
#include "RecordingSink.h"
#include "ScriptedHost.h"
#include "TempDir.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/SqlCipherStore.h"
#include "backends/vdir/DemoContacts.h"
#include "backends/vdir/VdirStore.h"
#include "platform/StoreGateway.h"
#include "session/SessionContext.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

namespace steplets::test {

class ContactStoreFixture : public ::testing::Test {
protected:
    ContactStoreFixture()
    {
        vdir::writeDemoContacts(tmp.file(QStringLiteral("vdir/contacts")));
        vdir::VdirConfig config;
        config.root = tmp.file(QStringLiteral("vdir"));
        app = vdir::openVdirStore(config, nullptr);
        sqlcipher::createDatabases(tmp.path());
        session() = SessionContext();
        SessionContext& s = session();
        s.olApp = app;
        s.olNS = app->GetNamespace(QStringLiteral("MAPI"));
        s.sContactFolderEID = QStringLiteral("contacts");
        s.sContactFolderSID = QStringLiteral("store");
        s.cnLink = db.CreateConnection();
        s.cnLink->Open(storeFiles::linkConnectionString(tmp.path()));
    }
    ~ContactStoreFixture() override { session() = SessionContext(); }

    void addContact(qint32 id, const QString& entryId, const QString& name, bool active = true)
    {
        auto rs = db.CreateRecordset();
        rs->Open(QStringLiteral("SELECT * FROM tblContacts"), session().cnLink);
        rs->AddNew();
        rs->Fields(QStringLiteral("ContactID")).setValue(Value(id));
        rs->Fields(QStringLiteral("ContactEntryID")).setValue(Value(entryId));
        rs->Fields(QStringLiteral("ContactName")).setValue(Value(name));
        rs->Fields(QStringLiteral("Active")).setValue(Value(active));
        rs->Update();
    }
    // The session's contact recordset as the chooser opens it: active rows by name.
    void openContacts()
    {
        session().rsContacts = db.CreateRecordset();
        session().rsContacts->Open(QStringLiteral("SELECT * FROM tblContacts WHERE Active=True ORDER BY ContactName"),
                                   session().cnLink, ado::adOpenKeyset, ado::adLockOptimistic);
    }

    // A host that plays `steps` (JSON text of a script).
    scripted::ScriptedHost& hostFor(const char* steps)
    {
        QString error;
        auto script = scripted::Script::fromJson(QJsonDocument::fromJson(steps).array(), &error);
        EXPECT_TRUE(script.has_value()) << error.toStdString();
        host = std::make_unique<scripted::ScriptedHost>(script.value_or(scripted::Script()),
                                                        QDateTime(QDate(2026, 3, 16), QTime(15, 30)));
        return *host;
    }
    // The members of the first event of that kind that the host recorded.
    static QJsonObject firstEvent(const scripted::ScriptedHost& h, const QString& kind)
    {
        for (const auto& e : h.events())
            if (e.toObject().contains(kind)) return e.toObject().value(kind).toObject();
        ADD_FAILURE() << "no " << kind.toStdString() << " event";
        return {};
    }

    TempDir tmp;
    sqlcipher::SqlCipherStore db;
    std::shared_ptr<ol::Application> app;
    std::unique_ptr<scripted::ScriptedHost> host;
    RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
};

} // namespace steplets::test
