// frmSelectContacts on the scripted host and a real link database, with a contact gone inactive,
// where no session reaches; the contact picker is played by the contacts-picker scenarios.
#include "ScriptedSteps.h"
#include "StoreFixture.h"
#include "dialogs/frmSelectContacts.h"

using namespace steplets;
using namespace steplets::test;

namespace {

class SelectContacts : public StoreFixture {
protected:
    SelectContacts() : StoreFixture(nullptr) {}
};

// The list was filled before the contact left the active rows: the dialog takes its EntryID from
// the active rows, where it is no longer found.
TEST_F(SelectContacts, AContactNoLongerActiveLeavesAnEmptyEntryAtTheEnd)
{
    session().cnLink = connect(storeFiles::linkConnectionString(tmp.path()));
    auto rs = db.CreateRecordset();
    rs->Open(QStringLiteral("SELECT * FROM tblContacts"), session().cnLink);
    for (const auto& [id, entryId, name, active] :
         {std::tuple<qint32, const char*, const char*, bool>{2, "c-ben", "Benjamin Okafor", true}, {4, "c-old", "Olive Left", false}}) {
        rs->AddNew();
        rs->Fields(QStringLiteral("ContactID")).setValue(Value(id));
        rs->Fields(QStringLiteral("ContactEntryID")).setValue(Value(entryId));
        rs->Fields(QStringLiteral("ContactName")).setValue(Value(name));
        rs->Fields(QStringLiteral("Active")).setValue(Value(active));
        rs->Update();
    }
    // The session's contact recordset as the chooser opens it: active rows by name.
    session().rsContacts = db.CreateRecordset();
    session().rsContacts->Open(QStringLiteral("SELECT * FROM tblContacts WHERE Active=True ORDER BY ContactName"),
                               session().cnLink, ado::adOpenKeyset, ado::adLockOptimistic);
    session().iContactMode = Int16(2);

    // The chooser's combo: a blank row first, then names with their IDs.
    const QStringList texts{QString(), QStringLiteral("Olive Left"), QStringLiteral("Benjamin Okafor")};
    const QList<qint32> ids{9999999, 4, 2};
    auto host = hostWith(R"([{"form": "frmSelectContacts", "select": "lbContacts", "item": "Olive Left"},
                             {"form": "frmSelectContacts", "select": "lbContacts", "item": "Benjamin Okafor"},
                             {"form": "frmSelectContacts", "click": "OKButton"}])");
    frmSelectContacts form(*host, ContactListReader{[&] { return int(texts.size()); }, [&](int i) { return texts.at(i); },
                                                    [&](int i) { return ids.at(i); }});
    QString shown;
    form.SelectContactDialog(shown);
    EXPECT_TRUE(host->script().atEnd()) << "every step was played";
    const auto& chosen = session().aSelectedContacts;
    ASSERT_EQ(chosen.ubound() - chosen.lbound(), 1);
    EXPECT_EQ(chosen[chosen.lbound()], QStringLiteral("c-ben"));
    EXPECT_EQ(chosen[chosen.ubound()], QString());
    EXPECT_TRUE(session().rsContacts->currentFilter().isEmpty());
    EXPECT_TRUE(sink.failures.empty());
}

} // namespace
