#include "DemoContacts.h"
#include "VCard.h"
#include "VdirFiles.h"
#include "platform/PrivateFiles.h"
#include <QDir>

namespace steplets::vdir {

namespace {

DemoContact make(const char* id, const char* first, const char* last, const char* company,
                 const char* account, const char* email, const char* phone, const char* street,
                 const char* city, const char* state, const char* zip, bool isUser = false)
{
    DemoContact c;
    c.entryId = QString::fromUtf8(id);
    c.firstName = QString::fromUtf8(first);
    c.lastName = QString::fromUtf8(last);
    c.companyName = QString::fromUtf8(company);
    c.account = QString::fromUtf8(account);
    c.email = QString::fromUtf8(email);
    c.phone = QString::fromUtf8(phone);
    c.street = QString::fromUtf8(street);
    c.city = QString::fromUtf8(city);
    c.state = QString::fromUtf8(state);
    c.postalCode = QString::fromUtf8(zip);
    c.country = QStringLiteral("United States");
    c.isUser = isUser;
    return c;
}

QByteArray cardOf(const DemoContact& c)
{
    VCard card;
    card.add(QStringLiteral("VERSION"), QStringLiteral("4.0"));
    card.addText(QStringLiteral("UID"), c.entryId);
    card.addText(QStringLiteral("FN"), c.fullName());
    card.add(QStringLiteral("N"), VCardLine::joinComponents({c.lastName, c.firstName, {}, {}, {}}));
    card.add(QStringLiteral("ORG"), VCardLine::joinComponents({c.companyName}));
    const VCardParam work{QStringLiteral("TYPE"), {QStringLiteral("work")}};
    card.addText(QStringLiteral("EMAIL"), c.email, {work});
    card.addText(QStringLiteral("TEL"), c.phone, {{QStringLiteral("TYPE"), {QStringLiteral("work"), QStringLiteral("voice")}}});
    card.add(QStringLiteral("ADR"),
             VCardLine::joinComponents({{}, {}, c.street, c.city, c.state, c.postalCode, c.country}), {work});
    card.addText(QStringLiteral("X-STEPLETS-ACCOUNT"), c.account);
    return card.serialize();
}

} // namespace

const QList<DemoContact>& demoContacts()
{
    static const QList<DemoContact> list = {
        make("c-morgan", "Morgan", "Hale", "Brackenfell Software", "BRK-000", "morgan.hale@brackenfell.example",
             "+1 503 555 0100", "200 Mill Street", "Portland", "OR", "97204", true),
        make("c-ada", "Ada", "Byrne", "Byrne & Lowell LLP", "BYR-101", "ada.byrne@byrnelowell.example",
             "+1 503 555 0142", "14 Alder Court", "Portland", "OR", "97205"),
        make("c-ben", "Benjamin", "Okafor", "Okafor Engineering", "OKA-102", "ben@okafor-eng.example",
             "+1 206 555 0117", "880 Harbor Way", "Seattle", "WA", "98104"),
        make("c-clara", "Clara", "Lindqvist", "Northwind Dental", "NWD-103", "clara.lindqvist@northwind.example",
             "+1 541 555 0193", "51 Pine Ridge Road", "Bend", "OR", "97701"),
        make("c-diego", "Diego", "Ramírez", "Ramírez Family Trust", "RAM-104", "diego@ramireztrust.example",
             "+1 916 555 0128", "3300 J Street", "Sacramento", "CA", "95816"),
        make("c-elena", "Elena", "Petrova", "Cascade Bakery", "CAS-105", "elena@cascadebakery.example",
             "+1 503 555 0176", "9 Division Street", "Portland", "OR", "97202"),
        make("c-farid", "Farid", "Haddad", "Haddad Imports", "HAD-106", "farid.haddad@haddadimports.example",
             "+1 253 555 0164", "1200 Pacific Avenue", "Tacoma", "WA", "98402"),
        make("c-grace", "Grace", "O'Neill", "O'Neill Architects", "ONE-107", "grace@oneill-arch.example",
             "+1 503 555 0155", "77 Couch Street", "Portland", "OR", "97209"),
        make("c-hiro", "Hiroshi", "Tanaka", "Tanaka Landscaping", "TAN-108", "hiro@tanakalandscape.example",
             "+1 971 555 0139", "4100 River Road", "Salem", "OR", "97303"),
        make("c-ines", "Inés", "Moreau", "Moreau Consulting", "MOR-109", "ines.moreau@moreau.example",
             "+1 360 555 0181", "25 Main Street", "Vancouver", "WA", "98660"),
        make("c-jonas", "Jonas", "Weber", "Weber Tool & Die", "WEB-110", "jonas.weber@webertool.example",
             "+1 541 555 0107", "610 Industrial Loop", "Eugene", "OR", "97402"),
        make("c-kavya", "Kavya", "Iyer", "Iyer Pediatrics", "IYE-111", "kavya.iyer@iyerpeds.example",
             "+1 503 555 0122", "1515 Burnside Street", "Portland", "OR", "97214"),
        make("c-liam", "Liam", "Gallagher", "Gallagher Marine Supply", "GAL-112", "liam@gallaghermarine.example",
             "+1 541 555 0168", "2 Bayfront Drive", "Newport", "OR", "97365"),
    };
    return list;
}

const DemoContact& demoUser() { return demoContacts().first(); }

int writeDemoContacts(const QString& collectionDir)
{
    if (!files::makePrivatePath(collectionDir))
        throw vdirFailure(fail::FileAccess, QStringLiteral("Cannot create the directory \"%1\"").arg(collectionDir));
    int written = 0;
    for (const DemoContact& c : demoContacts()) {
        writeFileAtomically(QDir(collectionDir).filePath(c.entryId + QStringLiteral(".vcf")), cardOf(c));
        ++written;
    }
    return written;
}

} // namespace steplets::vdir
