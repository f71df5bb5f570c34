// The contact picker port on a real link database and real vCards: which version a mail client
// takes, the rows each version offers, the twenty arguments in their order, and the result.
#include "ContactStoreFixture.h"
#include "platform/ContactPicker.h"

using namespace steplets;
using namespace steplets::test;

namespace {

// Keeps the last request, then answers as the script says.
class RecordingHost : public scripted::ScriptedHost {
public:
    using ScriptedHost::ScriptedHost;
    ContactPickerResult pickContact(const ContactPickerRequest& request) override
    {
        last = request;
        return ScriptedHost::pickContact(request);
    }
    ContactPickerRequest last;
};

class Picker : public ContactStoreFixture {
protected:
    Picker()
    {
        addContact(1, QStringLiteral("c-ben"), QStringLiteral("Benjamin Okafor"));
        addContact(2, QStringLiteral("c-gone"), QStringLiteral("Gina Gone"));
        addContact(3, QStringLiteral("c-ada"), QStringLiteral("Ada Byrne"));
        addContact(4, QStringLiteral("c-clara"), QStringLiteral("Clara Lindqvist"), false);
        addContact(5, QString(), QStringLiteral("No Card"));
    }

    // Shows the picker of that version as the chooser does, the script answering.
    ContactPicker& show(int outlookVersion, const char* answer, bool manage = false)
    {
        QString error;
        auto script = scripted::Script::fromJson(QJsonDocument::fromJson(answer).array(), &error);
        EXPECT_TRUE(script.has_value()) << error.toStdString();
        picker.reset();
        recording = std::make_unique<RecordingHost>(script.value_or(scripted::Script()),
                                                    QDateTime(QDate(2026, 3, 16), QTime(15, 30)));
        picker = createContactPicker(outlookVersion, *recording, db, session().olNS);
        SessionContext& s = session();
        qint32 timeCard = 77, option = 2, flags = 16, top = 1200, left = 2400, width = 7320, height = 7680;
        QString provider = QStringLiteral("prov"), filter, r1, r2, r3, r4, r5, r6;
        Bool16 bManage(manage);
        picker->ShowPicker(s.cnLink, timeCard, provider, option, s.sContactFolderEID, s.sContactFolderSID, filter,
                           bManage, flags, r1, r2, r3, r4, r5, r6, top, left, width, height, nullptr);
        return *picker;
    }
    const ContactPickerRequest& request() const { return recording->last; }
    const ContactPickerRow& row(const QString& name) const
    {
        for (const auto& r : request().rows)
            if (r.name == name) return r;
        static const ContactPickerRow none;
        ADD_FAILURE() << name.toStdString() << " was not offered";
        return none;
    }

    std::unique_ptr<RecordingHost> recording;
    std::unique_ptr<ContactPicker> picker;
};

const char* kCancel = R"([{"picker": "cancel"}])";

TEST_F(Picker, NineAndBelowTakeTheOlderAndTenOnTheNewer)
{
    for (int version : {0, 8, 9}) EXPECT_EQ(show(version, kCancel).version(), ContactPicker::Version::Older) << version;
    EXPECT_EQ(request().version, QStringLiteral("older"));
    for (int version : {10, 11, 12}) EXPECT_EQ(show(version, kCancel).version(), ContactPicker::Version::Newer) << version;
    EXPECT_EQ(request().version, QStringLiteral("newer"));
}

TEST_F(Picker, TheNewerOffersTheActiveRowsInTableOrderWithCompanyAndMailFromTheCard)
{
    show(11, kCancel);
    QStringList names;
    for (const auto& r : request().rows) names << r.name;
    EXPECT_EQ(names, (QStringList{QStringLiteral("Benjamin Okafor"), QStringLiteral("Gina Gone"),
                                  QStringLiteral("Ada Byrne"), QStringLiteral("No Card")}));
    const auto& ada = row(QStringLiteral("Ada Byrne"));
    EXPECT_EQ(ada.contactID, 3);
    EXPECT_EQ(ada.entryID, QStringLiteral("c-ada"));
    EXPECT_TRUE(ada.hasCard);
    EXPECT_EQ(ada.company, QStringLiteral("Byrne & Lowell LLP"));
    EXPECT_EQ(ada.email, QStringLiteral("ada.byrne@byrnelowell.example"));
}

TEST_F(Picker, ARowWhoseCardIsGoneIsStillOfferedByName)
{
    show(11, kCancel);
    for (const QString& name : {QStringLiteral("Gina Gone"), QStringLiteral("No Card")}) {
        const auto& r = row(name);
        EXPECT_FALSE(r.hasCard) << name.toStdString();
        EXPECT_TRUE(r.company.isEmpty());
        EXPECT_TRUE(r.email.isEmpty());
    }
}

TEST_F(Picker, TheOlderOffersNamesOnly)
{
    show(9, kCancel);
    ASSERT_EQ(request().rows.size(), 4);
    const auto& ben = row(QStringLiteral("Benjamin Okafor"));
    EXPECT_TRUE(ben.hasCard);
    EXPECT_TRUE(ben.company.isEmpty());
    EXPECT_TRUE(ben.email.isEmpty());
}

TEST_F(Picker, TheTwentyArgumentsTravelInTheirOrderWithTheBoundsAndTheRight)
{
    show(11, kCancel, true);
    QStringList names;
    for (const auto& [name, value] : request().arguments) names << name;
    EXPECT_EQ(names, (QStringList{"cnLink", "lTimeCardID", "sProvider", "iOption", "sContactFolderEID",
                                  "sContactFolderSID", "sFilter", "bManageContacts", "iFlags", "sReserved1",
                                  "sReserved2", "sReserved3", "sReserved4", "sReserved5", "sReserved6", "lTop",
                                  "lLeft", "lWidth", "lHeight", "oParent"}));
    const auto& a = request().arguments;
    EXPECT_EQ(a[0].second, Value(true));
    EXPECT_EQ(a[1].second, Value(77));
    EXPECT_EQ(a[2].second, Value(QStringLiteral("prov")));
    EXPECT_EQ(a[3].second, Value(2));
    EXPECT_EQ(a[8].second, Value(16));
    EXPECT_TRUE(a[19].second.isNull());
    EXPECT_TRUE(request().manageContacts);
    EXPECT_EQ(request().top, 1200);
    EXPECT_EQ(request().left, 2400);
    EXPECT_EQ(request().width, 7320);
    EXPECT_EQ(request().height, 7680);
    const QJsonObject recorded = firstEvent(*recording, QStringLiteral("picker"));
    EXPECT_EQ(recorded[QStringLiteral("version")].toString(), QStringLiteral("newer"));
    EXPECT_EQ(recorded[QStringLiteral("offered")].toArray().size(), 4);
}

TEST_F(Picker, AChoiceGivesNumberNameAndEntryID)
{
    const ContactPicker& p = show(11, R"([{"picker": {"ContactID": 3, "name": "Ada Byrne", "EntryID": "c-ada"}}])");
    EXPECT_EQ(p.ContactID(), 3);
    EXPECT_EQ(p.ContactName(), QStringLiteral("Ada Byrne"));
    EXPECT_EQ(p.ContactEntryID(), QStringLiteral("c-ada"));
}

TEST_F(Picker, NoChoiceGivesZeroAndNothingElse)
{
    const ContactPicker& p = show(9, R"([{"picker": {"ContactID": 0, "name": "Ada Byrne", "EntryID": "c-ada"}}])");
    EXPECT_EQ(p.ContactID(), 0);
    EXPECT_TRUE(p.ContactName().isEmpty());
    EXPECT_TRUE(p.ContactEntryID().isEmpty());
    EXPECT_EQ(show(11, kCancel).ContactID(), 0);
}

TEST_F(Picker, WithoutANamespaceNoRowHasItsCard)
{
    QString error;
    auto script = scripted::Script::fromJson(QJsonDocument::fromJson(kCancel).array(), &error);
    ASSERT_TRUE(script.has_value()) << error.toStdString();
    recording = std::make_unique<RecordingHost>(*script, QDateTime(QDate(2026, 3, 16), QTime(15, 30)));
    auto p = createContactPicker(11, *recording, db, nullptr);
    SessionContext& s = session();
    qint32 n = 0;
    QString t;
    Bool16 b;
    p->ShowPicker(s.cnLink, n, t, n, t, t, t, b, n, t, t, t, t, t, t, n, n, n, n, nullptr);
    ASSERT_EQ(request().rows.size(), 4);
    for (const auto& r : request().rows) EXPECT_FALSE(r.hasCard) << r.name.toStdString();
}

} // namespace
