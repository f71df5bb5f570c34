// The contact picker port on a real link database and real vCards, where no session reaches: a
// choice without a number, no namespace.
#include "ContactStoreFixture.h"
#include "platform/ContactPicker.h"

using namespace steplets;
using namespace steplets::test;

namespace {

class Picker : public ContactStoreFixture {
protected:
    Picker()
    {
        addContact(1, QStringLiteral("c-ben"), QStringLiteral("Benjamin Okafor"));
        addContact(2, QStringLiteral("c-ada"), QStringLiteral("Ada Byrne"));
        addContact(3, QStringLiteral("c-clara"), QStringLiteral("Clara Lindqvist"), false);
        addContact(4, QString(), QStringLiteral("No Card"));
    }

    // Shows the picker of that version as the chooser does, the script answering; the rows it
    // offered are in the host's "picker" event.
    ContactPicker& show(int outlookVersion, const char* answer, bool withNamespace = true)
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
    // Each offered row as "name card" or "name -".
    QStringList offered() const
    {
        QStringList out;
        for (const auto& r : firstEvent(*host, QStringLiteral("picker"))[QStringLiteral("offered")].toArray())
            out << r[QStringLiteral("name")].toString() + (r[QStringLiteral("hasCard")].toBool() ? " card" : " -");
        return out;
    }
    std::unique_ptr<ContactPicker> picker;
};

const char* kPickerCancel = R"([{"picker": "cancel"}])";

// Which version a session's Outlook gets, and the rows offered with their cards, are played by
// the contacts-picker scenarios.
TEST_F(Picker, WithoutANamespaceNoRowHasACardAndAChoiceWithoutANumberGivesNothing)
{
    show(11, kPickerCancel, false);
    EXPECT_EQ(offered(), (QStringList{"Benjamin Okafor -", "Ada Byrne -", "No Card -"})) << "the inactive row is left out";
    const ContactPicker& p = show(9, R"([{"picker": {"ContactID": 0, "name": "Ada Byrne", "EntryID": "c-ada"}}])");
    EXPECT_EQ(p.ContactID(), 0);
    EXPECT_TRUE(p.ContactName().isEmpty());
    EXPECT_TRUE(p.ContactEntryID().isEmpty());
}

} // namespace
