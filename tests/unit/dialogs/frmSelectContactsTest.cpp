// frmSelectContacts on the scripted host and a real link database, where no session reaches.
#include "ContactStoreFixture.h"
#include "dialogs/frmSelectContacts.h"

using namespace steplets;
using namespace steplets::test;

namespace {

// The chooser's combo as the dialog reads it: a blank row first, then names with their IDs.
struct Rows {
    QStringList texts;
    QList<qint32> ids;
    ContactListReader reader() const
    {
        return {[this] { return static_cast<int>(texts.size()); }, [this](int i) { return texts.at(i); },
                [this](int i) { return ids.at(i); }};
    }
};

class SelectContacts : public ContactStoreFixture {
protected:
    SelectContacts()
    {
        addContact(1, QStringLiteral("c-ada"), QStringLiteral("Ada Byrne"));
        addContact(2, QStringLiteral("c-ben"), QStringLiteral("Benjamin Okafor"));
        addContact(3, QStringLiteral("c-clara"), QStringLiteral("Clara Lindqvist"));
        addContact(4, QStringLiteral("c-old"), QStringLiteral("Olive Left"), false);
        openContacts();
        combo.texts = {QString(), QStringLiteral("Ada Byrne"), QStringLiteral("Benjamin Okafor"),
                       QStringLiteral("Clara Lindqvist")};
        combo.ids = {9999999, 1, 2, 3};
    }

    // Calls SelectContactDialog with `shown` while `steps` play; the form stays for inspection.
    frmSelectContacts& play(int mode, const QString& shown, const char* steps)
    {
        session().iContactMode = Int16(static_cast<std::int16_t>(mode));
        form.reset();   // before the host it lives on
        host = hostWith(steps);
        form = std::make_unique<frmSelectContacts>(*host, combo.reader());
        QString contact = shown;
        form->SelectContactDialog(contact);
        EXPECT_TRUE(host->script().atEnd()) << "every step was played";
        return *form;
    }
    QStringList offered() const
    {
        QStringList out;
        for (int i = 0; i < form->lbContacts.ListCount(); ++i) out << form->lbContacts.List(i);
        return out;
    }
    QStringList selection() const
    {
        QStringList out;
        const auto& a = session().aSelectedContacts;
        for (long i = a.lbound(); i <= a.ubound(); ++i) out << a[i];
        return out;
    }

    Rows combo;
    std::unique_ptr<frmSelectContacts> form;
};

const char* kCancel = R"([{"form": "frmSelectContacts", "click": "CancelButton"}])";

// Offered rows and headers under what no session passes: another spelling of the shown name,
// a contact mode that is neither link nor separate, an empty list.
TEST_F(SelectContacts, OnlyTheExactShownNameIsLeftOutAndOtherModesHaveNoHeader)
{
    play(1, QStringLiteral("ada byrne"), kCancel);
    EXPECT_EQ(offered().size(), 3);
    play(0, QStringLiteral("Ada Byrne"), kCancel);
    EXPECT_EQ(offered().size(), 3);
    EXPECT_TRUE(form->hdrText.Caption().isEmpty());

    combo.texts = {QString()};
    combo.ids = {9999999};
    play(1, QString(), R"([{"form": "frmSelectContacts", "snapshot": true}, {"form": "frmSelectContacts", "click": "CancelButton"}])");
    EXPECT_EQ(form->lbContacts.ListCount(), 0);
    const QJsonObject controls = firstEvent(*host, QStringLiteral("snapshot"))[QStringLiteral("controls")].toObject();
    EXPECT_FALSE(controls[QStringLiteral("OKButton")][QStringLiteral("enabled")].toBool());
    EXPECT_TRUE(controls[QStringLiteral("CancelButton")][QStringLiteral("enabled")].toBool());
}

// The list was filled before the contact left the active rows.
TEST_F(SelectContacts, AContactNoLongerActiveLeavesAnEmptyEntryAtTheEnd)
{
    combo.texts.insert(1, QStringLiteral("Olive Left"));
    combo.ids.insert(1, 4);
    play(2, QString(), R"([
        {"form": "frmSelectContacts", "select": "lbContacts", "item": "Olive Left"},
        {"form": "frmSelectContacts", "select": "lbContacts", "item": "Benjamin Okafor"},
        {"form": "frmSelectContacts", "click": "OKButton"}])");
    EXPECT_EQ(selection(), (QStringList{QStringLiteral("c-ben"), QString()}));
    EXPECT_TRUE(session().rsContacts->currentFilter().isEmpty());
    EXPECT_TRUE(sink.failures.empty());
}

} // namespace
