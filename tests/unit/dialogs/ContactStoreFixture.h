#pragma once
// The contact dialogs on real stores: tblContacts rows in the link database, the session's
// contact recordset open on the active rows by name, and a scripted host.
#include "ScriptedSteps.h"
#include "StoreFixture.h"

namespace steplets::test {

class ContactStoreFixture : public StoreFixture {
protected:
    ContactStoreFixture() : StoreFixture(nullptr)
    {
        session().cnLink = connect(storeFiles::linkConnectionString(tmp.path()));
    }

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

    std::unique_ptr<scripted::ScriptedHost> host;
};

} // namespace steplets::test
