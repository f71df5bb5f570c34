// frmSelectContacts on the scripted host and a real link database, with a contact gone
// inactive. tblContacts holds three active contacts with cards, one no longer active
// and one without a card; the contact picker is played by the contacts-picker scenarios.
#include "ScriptedSteps.h"
#include "StoreFixture.h"
#include "dialogs/frmSelectContacts.h"

using namespace steplets;
using namespace steplets::test;

namespace {

class SelectContacts : public StoreFixture {
protected:
    SelectContacts() : StoreFixture(nullptr)
    {
        session().cnLink = connect(storeFiles::linkConnectionString(tmp.path()));
        auto rs = db.CreateRecordset();
        rs->Open(QStringLiteral("SELECT * FROM tblContacts"), session().cnLink);
        const std::tuple<qint32, const char*, const char*, bool> rows[] = {
            {1, "c-ada", "Ada Byrne", true}, {2, "c-ben", "Benjamin Okafor", true}, {3, "c-clara", "Clara Lindqvist", true},
            {4, "c-old", "Olive Left", false}, {5, "", "No Card", true}};
        for (const auto& [id, entryId, name, active] : rows) {
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
    }

    // Calls SelectContactDialog with `shown` while `steps` play, the chooser's combo holding a
    // blank row and then `names` with their IDs; the form stays for inspection.
    frmSelectContacts& select(int mode, const QString& shown, const char* steps, QStringList names = {},
                              QList<qint32> ids = {})
    {
        texts = QStringList{QString()} + names;
        this->ids = QList<qint32>{9999999} + ids;
        session().iContactMode = Int16(static_cast<std::int16_t>(mode));
        form.reset();   // before the host it lives on
        host = hostWith(steps);
        form = std::make_unique<frmSelectContacts>(
            *host, ContactListReader{[this] { return int(texts.size()); }, [this](int i) { return texts.at(i); },
                                     [this](int i) { return this->ids.at(i); }});
        QString contact = shown;
        form->SelectContactDialog(contact);
        EXPECT_TRUE(host->script().atEnd()) << "every step was played";
        return *form;
    }

    QStringList texts;
    QList<qint32> ids;
    std::unique_ptr<scripted::ScriptedHost> host;
    std::unique_ptr<frmSelectContacts> form;
};


// The list was filled before the contact left the active rows.
TEST_F(SelectContacts, AContactNoLongerActiveLeavesAnEmptyEntryAtTheEnd)
{
    select(2, QString(), R"([
        {"form": "frmSelectContacts", "select": "lbContacts", "item": "Olive Left"},
        {"form": "frmSelectContacts", "select": "lbContacts", "item": "Benjamin Okafor"},
        {"form": "frmSelectContacts", "click": "OKButton"}])", {"Olive Left", "Benjamin Okafor"}, {4, 2});
    const auto& chosen = session().aSelectedContacts;
    ASSERT_EQ(chosen.ubound() - chosen.lbound(), 1);
    EXPECT_EQ(chosen[chosen.lbound()], QStringLiteral("c-ben"));
    EXPECT_EQ(chosen[chosen.ubound()], QString());
    EXPECT_TRUE(session().rsContacts->currentFilter().isEmpty());
    EXPECT_TRUE(sink.failures.empty());
}

} // namespace
