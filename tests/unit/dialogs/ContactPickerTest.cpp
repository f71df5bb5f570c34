// The contact picker port on a real link database and real vCards, where no session reaches:
// the versions on either side of the boundary, a choice without a number, no namespace.
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
    ContactPicker& show(int outlookVersion, const char* answer)
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
        Bool16 bManage(false);
        picker->ShowPicker(s.cnLink, timeCard, provider, option, s.sContactFolderEID, s.sContactFolderSID, filter,
                           bManage, flags, r1, r2, r3, r4, r5, r6, top, left, width, height, nullptr);
        return *picker;
    }
    const ContactPickerRequest& request() const { return recording->last; }
    std::unique_ptr<RecordingHost> recording;
    std::unique_ptr<ContactPicker> picker;
};

const char* kCancel = R"([{"picker": "cancel"}])";

TEST_F(Picker, NineAndBelowTakeTheOlderAndTenOnTheNewer)
{
    for (int version : {0, 8, 9}) EXPECT_EQ(show(version, kCancel).version(), ContactPicker::Version::Older) << version;
    for (int version : {10, 11, 12}) EXPECT_EQ(show(version, kCancel).version(), ContactPicker::Version::Newer) << version;
    // A row without an EntryID has no card to read, and is offered by its name all the same.
    ASSERT_EQ(recording->last.rows.size(), 4u);
    EXPECT_EQ(recording->last.rows.back().name, QStringLiteral("No Card"));
    EXPECT_FALSE(recording->last.rows.back().hasCard);
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
