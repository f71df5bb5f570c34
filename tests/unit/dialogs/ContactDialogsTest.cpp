// The contact dialogs on the scripted host and a real link database, where no session reaches:
// frmSelectContacts with an empty list or a contact gone inactive, and the contact picker
// port without a namespace or given a choice without a number. tblContacts holds three active
// contacts with cards, one no longer active and one without a card.
#include "ScriptedSteps.h"
#include "StoreFixture.h"
#include "dialogs/frmSelectContacts.h"
#include "platform/ContactPicker.h"

using namespace steplets;
using namespace steplets::test;

namespace {

class ContactDialogs : public StoreFixture {
protected:
    ContactDialogs() : StoreFixture(nullptr)
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

    // Shows the picker of that version as the chooser does, the script answering.
    ContactPicker& pick(int outlookVersion, const char* answer, bool withNamespace)
    {
        picker.reset();
        host = hostWith(answer);
        picker = createContactPicker(outlookVersion, *host, db, withNamespace ? session().olNS : nullptr);
        SessionContext& s = session();
        qint32 timeCard = 77, option = 2, flags = 16, top = 1200, left = 2400, width = 7320, height = 7680;
        QString provider = QStringLiteral("prov"), filter, r1, r2, r3, r4, r5, r6;
        Bool16 bManage(false);
        picker->ShowPicker(s.cnLink, timeCard, provider, option, s.sContactFolderEID, s.sContactFolderSID, filter,
                           bManage, flags, r1, r2, r3, r4, r5, r6, top, left, width, height, nullptr);
        return *picker;
    }

    QStringList texts;
    QList<qint32> ids;
    std::unique_ptr<scripted::ScriptedHost> host;
    std::unique_ptr<frmSelectContacts> form;
    std::unique_ptr<ContactPicker> picker;
};


// An empty list, and a contact that left the active rows after the list was filled.
TEST_F(ContactDialogs, SelectContactsWithAnEmptyListAndWithAContactNoLongerActive)
{
    select(1, QString(), R"([{"form": "frmSelectContacts", "snapshot": true}, {"form": "frmSelectContacts", "click": "CancelButton"}])");
    EXPECT_EQ(form->lbContacts.ListCount(), 0);
    const QJsonObject controls = firstEvent(*host, QStringLiteral("snapshot"))[QStringLiteral("controls")].toObject();
    EXPECT_FALSE(controls[QStringLiteral("OKButton")][QStringLiteral("enabled")].toBool());
    EXPECT_TRUE(controls[QStringLiteral("CancelButton")][QStringLiteral("enabled")].toBool());

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

// Which version a session's Outlook gets, and the rows offered with their cards, are played by
// the contacts-picker scenarios.
TEST_F(ContactDialogs, ThePickerWithoutANamespaceOffersNoCardAndAChoiceWithoutANumberGivesNothing)
{
    pick(11, R"([{"picker": "cancel"}])", false);
    QStringList offered;
    for (const auto& r : firstEvent(*host, QStringLiteral("picker"))[QStringLiteral("offered")].toArray())
        offered << r[QStringLiteral("name")].toString() + (r[QStringLiteral("hasCard")].toBool() ? " card" : " -");
    EXPECT_EQ(offered, (QStringList{"Ada Byrne -", "Benjamin Okafor -", "Clara Lindqvist -", "No Card -"}));
    const ContactPicker& p = pick(9, R"([{"picker": {"ContactID": 0, "name": "Ada Byrne", "EntryID": "c-ada"}}])", true);
    EXPECT_EQ(p.ContactID(), 0);
    EXPECT_TRUE(p.ContactName().isEmpty());
    EXPECT_TRUE(p.ContactEntryID().isEmpty());
}

} // namespace
