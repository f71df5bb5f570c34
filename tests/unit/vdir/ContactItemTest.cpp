// Contact items: the 88 fill-in properties, the computed names, vCard 3.0 and 4.0 input.
#include "VdirFixture.h"
#include "backends/vdir/ContactCard.h"
#include "backends/vdir/DemoContacts.h"

using namespace steplets;
using namespace steplets::test;

namespace {

using ContactItems = VdirFixture;

std::shared_ptr<ol::ContactItem> contactIn(ol::NameSpace& ns, const QString& id)
{
    return ol::asContact(ns.GetItemFromID(id, QStringLiteral("store")));
}

} // namespace

TEST_F(ContactItems, TheFillInListHasEightyEightNamesWithoutBlanks)
{
    const QStringList& names = vdir::contactFillInProperties();
    EXPECT_EQ(names.size(), 88);
    EXPECT_TRUE(names.contains(QStringLiteral("Business2TelephoneNumber")));
    EXPECT_TRUE(names.contains(QStringLiteral("NickName")));
    EXPECT_TRUE(names.contains(QStringLiteral("UserProperties")));
    EXPECT_TRUE(names.contains(QStringLiteral("CustomerID")));
    for (const QString& n : names)
        EXPECT_FALSE(n.contains(QLatin1Char(' ')));
}

TEST_F(ContactItems, EveryWritablePropertyRoundTripsThroughTheFile)
{
    vdir::writeDemoContacts(tmp.file(QStringLiteral("contacts")));
    auto c = contactIn(*ns, QStringLiteral("c-ada"));
    QMap<QString, Value> written;
    int n = 0;
    for (const QString& name : vdir::contactFillInProperties()) {
        if (vdir::isComputedContactProperty(name))
            continue;
        Value v;
        if (name == QLatin1String("Birthday"))
            v = Value(Date::fromParts(1985, 4, 12));
        else if (name == QLatin1String("Importance"))
            v = Value(2);
        else
            v = Value(QStringLiteral("%1 value %2, with; marks").arg(name).arg(++n));
        c->set(name, v);
        written.insert(name, v);
    }
    c->Save();
    open();
    auto back = contactIn(*ns, QStringLiteral("c-ada"));
    for (auto it = written.constBegin(); it != written.constEnd(); ++it)
        EXPECT_EQ(back->get(it.key()), it.value()) << it.key().toStdString() << " read " << back->get(it.key()).debugText().toStdString();
}

TEST_F(ContactItems, EveryFillInPropertyReadsAsTextAndMissingOnesAreEmpty)
{
    vdir::writeDemoContacts(tmp.file(QStringLiteral("contacts")));
    auto c = contactIn(*ns, QStringLiteral("c-ada"));
    for (const QString& name : vdir::contactFillInProperties())
        EXPECT_NO_THROW(c->get(name).textOrEmpty()) << name.toStdString();
    EXPECT_EQ(c->get(QStringLiteral("Birthday")).textOrEmpty(), QString());
    EXPECT_EQ(c->get(QStringLiteral("NickName")).textOrEmpty(), QString());
    EXPECT_EQ(c->get(QStringLiteral("Importance")).textOrEmpty(), QStringLiteral("1"));
    EXPECT_EQ(c->get(QStringLiteral("BusinessTelephoneNumber")), Value("+1 503 555 0142"));
    EXPECT_EQ(c->get(QStringLiteral("Email1Address")), Value("ada.byrne@byrnelowell.example"));
    EXPECT_EQ(c->get(QStringLiteral("BusinessAddressCity")), Value("Portland"));
    EXPECT_EQ(c->get(QStringLiteral("MailingAddressStreet")), Value("14 Alder Court")) << "the business address stands in";
    EXPECT_EQ(c->get(QStringLiteral("Account")), Value("BYR-101"));
    EXPECT_EQ(failureOf([&] { c->get(QStringLiteral("Shoe Size")); }).number(), vdir::fail::NoSuchProperty);
}

TEST_F(ContactItems, ComputedNamesComeFromTheParts)
{
    writeRaw(QStringLiteral("contacts/grace.vcf"),
             "BEGIN:VCARD\r\nVERSION:4.0\r\nUID:grace\r\nFN:Dr. Grace Ann O'Neill Jr.\r\n"
             "N:O'Neill;Grace;Ann;Dr.;Jr.\r\nORG:O'Neill Architects;Design\r\n"
             "ADR;TYPE=home:;;9 Elm Row;Bend;OR;97701;USA\r\nEND:VCARD\r\n");
    auto c = contactIn(*ns, QStringLiteral("grace"));
    const QList<QPair<const char*, const char*>> expected = {
        {"FullName", "Dr. Grace Ann O'Neill Jr."}, {"FileAs", "O'Neill, Grace"}, {"Subject", "Dr. Grace Ann O'Neill Jr."},
        {"LastNameAndFirstName", "O'Neill, Grace"}, {"LastFirstAndSuffix", "O'Neill, Grace Jr."},
        {"LastFirstNoSpace", "O'NeillGrace"}, {"LastFirstNoSpaceAndSuffix", "O'NeillGrace Jr."},
        {"LastFirstSpaceOnly", "O'Neill Grace"}, {"CompanyAndFullName", "O'Neill Architects (Dr. Grace Ann O'Neill Jr.)"},
        {"FullNameAndCompany", "Dr. Grace Ann O'Neill Jr. (O'Neill Architects)"},
        {"CompanyLastFirstNoSpace", "O'Neill Architects (O'NeillGrace)"},
        {"CompanyLastFirstSpaceOnly", "O'Neill Architects (O'Neill Grace)"},
        {"LastFirstNoSpaceCompany", "O'NeillGrace (O'Neill Architects)"},
        {"LastFirstSpaceOnlyCompany", "O'Neill Grace (O'Neill Architects)"}, {"Initials", "G.A.O."},
        {"Department", "Design"}, {"Title", "Dr."}, {"MiddleName", "Ann"},
        {"HomeAddress", "9 Elm Row\nBend, OR 97701\nUSA"}, {"MailingAddress", "9 Elm Row\nBend, OR 97701\nUSA"},
    };
    for (const auto& [name, text] : expected)
        EXPECT_EQ(c->get(QString::fromLatin1(name)).textOrEmpty(), QString::fromUtf8(text)) << name;
    EXPECT_TRUE(failureOf([&] { c->set(QStringLiteral("LastFirstNoSpace"), Value("x")); }).description().contains(QStringLiteral("read-only")));

    c->set(QStringLiteral("FileAs"), Value("Architects: O'Neill"));
    c->Save();
    open();
    EXPECT_EQ(contactIn(*ns, QStringLiteral("grace"))->FileAs(), QStringLiteral("Architects: O'Neill")) << "a stored FileAs wins";
}

TEST_F(ContactItems, AVersionThreeCardFromAnotherClientIsRead)
{
    writeRaw(QStringLiteral("contacts/old.vcf"),
             "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Tanaka;Hiroshi;;;\r\nFN:Hiroshi Tanaka\r\nNICKNAME:Hiro\r\n"
             "EMAIL;TYPE=INTERNET:second@example.com\r\nEMAIL;TYPE=INTERNET,PREF:first@example.com\r\n"
             "TEL;TYPE=WORK,VOICE:111\r\nTEL;TYPE=WORK,VOICE:222\r\nTEL;TYPE=CELL:333\r\nTEL;TYPE=HOME,FAX:444\r\n"
             "BDAY:1979-11-02\r\nitem1.URL:http://tanaka.example\r\nX-SOCIAL:keep me\r\nEND:VCARD\r\n");
    auto c = contactIn(*ns, QStringLiteral("old"));
    EXPECT_EQ(c->get(QStringLiteral("NickName")), Value("Hiro"));
    EXPECT_EQ(c->get(QStringLiteral("Email1Address")), Value("first@example.com"));
    EXPECT_EQ(c->get(QStringLiteral("Email2Address")), Value("second@example.com"));
    EXPECT_EQ(c->get(QStringLiteral("BusinessTelephoneNumber")), Value("111"));
    EXPECT_EQ(c->get(QStringLiteral("Business2TelephoneNumber")), Value("222"));
    EXPECT_EQ(c->get(QStringLiteral("MobileTelephoneNumber")), Value("333"));
    EXPECT_EQ(c->get(QStringLiteral("HomeFaxNumber")), Value("444"));
    EXPECT_EQ(c->get(QStringLiteral("Birthday")), Value(Date::fromParts(1979, 11, 2)));
    EXPECT_FALSE(c->get(QStringLiteral("Birthday")).textOrEmpty().isEmpty());
    EXPECT_EQ(c->get(QStringLiteral("BusinessHomePage")), Value("http://tanaka.example"));
    c->set(QStringLiteral("JobTitle"), Value("Owner"));
    c->Save();
    const QByteArray vcf = fileText(tmp.file(QStringLiteral("contacts/old.vcf")));
    EXPECT_TRUE(vcf.contains("X-SOCIAL:keep me"));
    EXPECT_TRUE(vcf.contains("TITLE:Owner"));
}

TEST_F(ContactItems, DemoContactsMatchTheirList)
{
    EXPECT_EQ(vdir::writeDemoContacts(tmp.file(QStringLiteral("contacts"))), vdir::demoContacts().size());
    EXPECT_GE(vdir::demoContacts().size(), 13);
    EXPECT_TRUE(vdir::demoUser().isUser);
    for (const vdir::DemoContact& d : vdir::demoContacts()) {
        auto c = contactIn(*ns, d.entryId);
        EXPECT_EQ(c->get(QStringLiteral("FullName")).textOrEmpty(), d.fullName());
        EXPECT_EQ(c->get(QStringLiteral("CompanyName")).textOrEmpty(), d.companyName);
        EXPECT_EQ(c->get(QStringLiteral("Email1Address")).textOrEmpty(), d.email);
        EXPECT_EQ(c->get(QStringLiteral("BusinessAddressPostalCode")).textOrEmpty(), d.postalCode);
        EXPECT_EQ(c->FileAs(), d.lastName + QStringLiteral(", ") + d.firstName);
    }
}
