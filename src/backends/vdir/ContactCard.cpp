#include "ContactCard.h"
#include <QDate>
#include <algorithm>

namespace steplets::vdir {

namespace {

const char* const kDisplayNames[] = {
    "Account", "Assistant Name", "Assistant Telephone Number", "Billing Information", "Birthday",
    "Business 2 Telephone Number", "Business Address", "Business Address City", "Business Address Country",
    "Business Address Post Office Box", "Business Address Postal Code", "Business Address State",
    "Business Address Street", "Business Fax Number", "Business Home Page", "Business Telephone Number",
    "Callback Telephone Number", "Car Telephone Number", "Companies", "Company And Full Name",
    "Company Last First No Space", "Company Last First Space Only", "Company Main Telephone Number",
    "Company Name", "Customer ID", "Department", "Email 1 Address", "Email 2 Address", "Email 3 Address",
    "File As", "First Name", "Full Name", "Full Name And Company", "Government ID Number",
    "Home 2 Telephone Number", "Home Address", "Home Address City", "Home Address Country",
    "Home Address Post Office Box", "Home Address Postal Code", "Home Address State", "Home Address Street",
    "Home Fax Number", "Home Telephone Number", "Importance", "Initials", "Job Title", "Last First And Suffix",
    "Last First No Space", "Last First No Space And Suffix", "Last First No Space Company",
    "Last First Space Only", "Last First Space Only Company", "Last Name", "Last Name And First Name",
    "Mailing Address", "Mailing Address City", "Mailing Address Country", "Mailing Address Post Office Box",
    "Mailing Address Postal Code", "Mailing Address State", "Mailing Address Street", "Manager Name",
    "Middle Name", "Mobile Telephone Number", "Nick Name", "Office Location", "Organizational ID Number",
    "Other Address", "Other Address City", "Other Address Country", "Other Address Post Office Box",
    "Other Address Postal Code", "Other Address State", "Other Address Street", "Other Fax Number",
    "Other Telephone Number", "Pager Number", "Primary Telephone Number", "Profession", "Spouse", "Subject",
    "Title", "User1", "User2", "User3", "User4", "User Properties"};

// Names beyond the fill-in list that a contact also answers to.
const QStringList kFurtherNames = {QStringLiteral("Suffix"), QStringLiteral("Body")};

// Read-only names composed from the name parts and the company.
const QStringList kComposed = {
    QStringLiteral("CompanyAndFullName"), QStringLiteral("CompanyLastFirstNoSpace"),
    QStringLiteral("CompanyLastFirstSpaceOnly"), QStringLiteral("FullNameAndCompany"),
    QStringLiteral("LastFirstAndSuffix"), QStringLiteral("LastFirstNoSpace"),
    QStringLiteral("LastFirstNoSpaceAndSuffix"), QStringLiteral("LastFirstNoSpaceCompany"),
    QStringLiteral("LastFirstSpaceOnly"), QStringLiteral("LastFirstSpaceOnlyCompany"),
    QStringLiteral("LastNameAndFirstName")};

const QStringList kNParts = {QStringLiteral("LastName"), QStringLiteral("FirstName"), QStringLiteral("MiddleName"),
                             QStringLiteral("Title"), QStringLiteral("Suffix")};
const QStringList kOrgParts = {QStringLiteral("CompanyName"), QStringLiteral("Department")};

struct Single { const char* property; const char* vcard; };
const Single kSingles[] = {{"NickName", "NICKNAME"}, {"JobTitle", "TITLE"}, {"Profession", "ROLE"},
                           {"Body", "NOTE"}, {"BusinessHomePage", "URL"}};

// Telephone numbers: the TYPE values written for each; reading classifies by them.
struct Phone { const char* property; QStringList types; };
const QList<Phone>& phones()
{
    static const QList<Phone> list = {
        {"BusinessTelephoneNumber", {"work", "voice"}}, {"Business2TelephoneNumber", {"work", "voice", "x-2"}},
        {"BusinessFaxNumber", {"work", "fax"}}, {"HomeTelephoneNumber", {"home", "voice"}},
        {"Home2TelephoneNumber", {"home", "voice", "x-2"}}, {"HomeFaxNumber", {"home", "fax"}},
        {"MobileTelephoneNumber", {"cell"}}, {"PagerNumber", {"pager"}}, {"CarTelephoneNumber", {"car"}},
        {"AssistantTelephoneNumber", {"x-assistant"}}, {"CallbackTelephoneNumber", {"x-callback"}},
        {"CompanyMainTelephoneNumber", {"work", "x-main"}}, {"PrimaryTelephoneNumber", {"voice", "pref"}},
        {"OtherFaxNumber", {"fax", "x-other"}}, {"OtherTelephoneNumber", {"x-other"}}};
    return list;
}

struct Address { const char* prefix; const char* type; };
const Address kAddresses[] = {{"Business", "work"}, {"Home", "home"}, {"Other", "x-other"}, {"Mailing", "postal"}};
// Component positions of ADR for the parts of an address.
struct AdrPart { const char* suffix; int index; };
const AdrPart kAdrParts[] = {{"PostOfficeBox", 0}, {"Street", 2}, {"City", 3}, {"State", 4},
                             {"PostalCode", 5}, {"Country", 6}};

QString xName(const QString& canonical) { return QStringLiteral("X-STEPLETS-") + canonical.toUpper(); }

QString str(const ContactData& c, const QString& name) { return c.stored.value(name).textOrEmpty(); }

QString joinNonEmpty(const QStringList& parts, const QString& sep)
{
    QStringList kept;
    for (const QString& p : parts)
        if (!p.isEmpty())
            kept << p;
    return kept.join(sep);
}

QString withParen(const QString& a, const QString& b)
{
    if (a.isEmpty() || b.isEmpty())
        return a.isEmpty() ? b : a;
    return a + QStringLiteral(" (") + b + QLatin1Char(')');
}

bool hasAddress(const ContactData& c, const QString& prefix)
{
    if (c.stored.contains(prefix + QStringLiteral("Address")))
        return true;
    for (const AdrPart& part : kAdrParts)
        if (c.stored.contains(prefix + QStringLiteral("Address") + QLatin1String(part.suffix)))
            return true;
    return false;
}

// The mailing address is its own card line when there is one, else the first address there is.
QString mailingSource(const ContactData& c)
{
    for (const char* p : {"Mailing", "Business", "Home", "Other"})
        if (hasAddress(c, QLatin1String(p)))
            return QLatin1String(p);
    return QStringLiteral("Mailing");
}

QString composedAddress(const ContactData& c, const QString& prefix)
{
    const QString a = prefix + QStringLiteral("Address");
    if (c.stored.contains(a))
        return str(c, a);
    const QString cityLine = joinNonEmpty({joinNonEmpty({str(c, a + QStringLiteral("City")), str(c, a + QStringLiteral("State"))}, QStringLiteral(", ")),
                                           str(c, a + QStringLiteral("PostalCode"))}, QStringLiteral(" "));
    return joinNonEmpty({str(c, a + QStringLiteral("Street")), str(c, a + QStringLiteral("PostOfficeBox")), cityLine,
                         str(c, a + QStringLiteral("Country"))}, QStringLiteral("\n"));
}

QString composedFullName(const ContactData& c)
{
    return joinNonEmpty({str(c, QStringLiteral("Title")), str(c, QStringLiteral("FirstName")), str(c, QStringLiteral("MiddleName")),
                         str(c, QStringLiteral("LastName")), str(c, QStringLiteral("Suffix"))}, QStringLiteral(" "));
}

QString computed(const ContactData& c, const QString& name)
{
    const QString first = str(c, QStringLiteral("FirstName"));
    const QString last = str(c, QStringLiteral("LastName"));
    const QString suffix = str(c, QStringLiteral("Suffix"));
    const QString company = str(c, QStringLiteral("CompanyName"));
    const QString fullName = c.stored.contains(QStringLiteral("FullName")) ? str(c, QStringLiteral("FullName")) : composedFullName(c);
    const QString lastFirst = joinNonEmpty({last, first}, QStringLiteral(", "));
    const QString noSpace = last + first;
    const QString spaceOnly = joinNonEmpty({last, first}, QStringLiteral(" "));
    if (name == QLatin1String("FullName") || name == QLatin1String("Subject"))
        return fullName;
    if (name == QLatin1String("FileAs"))
        return lastFirst.isEmpty() ? company : lastFirst;
    if (name == QLatin1String("LastNameAndFirstName"))
        return lastFirst;
    if (name == QLatin1String("LastFirstAndSuffix"))
        return joinNonEmpty({lastFirst, suffix}, QStringLiteral(" "));
    if (name == QLatin1String("LastFirstNoSpace"))
        return noSpace;
    if (name == QLatin1String("LastFirstNoSpaceAndSuffix"))
        return joinNonEmpty({noSpace, suffix}, QStringLiteral(" "));
    if (name == QLatin1String("LastFirstSpaceOnly"))
        return spaceOnly;
    if (name == QLatin1String("CompanyAndFullName"))
        return withParen(company, fullName);
    if (name == QLatin1String("FullNameAndCompany"))
        return withParen(fullName, company);
    if (name == QLatin1String("CompanyLastFirstNoSpace"))
        return withParen(company, noSpace);
    if (name == QLatin1String("CompanyLastFirstSpaceOnly"))
        return withParen(company, spaceOnly);
    if (name == QLatin1String("LastFirstNoSpaceCompany"))
        return withParen(noSpace, company);
    if (name == QLatin1String("LastFirstSpaceOnlyCompany"))
        return withParen(spaceOnly, company);
    if (name == QLatin1String("Initials")) {
        QString out;
        for (const QString& part : {first, str(c, QStringLiteral("MiddleName")), last})
            if (!part.isEmpty())
                out += part.left(1) + QLatin1Char('.');
        return out;
    }
    if (name.startsWith(QLatin1String("Mailing"))) {
        const QString source = mailingSource(c);
        const QString rest = name.mid(QStringLiteral("Mailing").size());
        if (rest == QLatin1String("Address"))
            return composedAddress(c, source);
        return str(c, source + rest);
    }
    if (name == QLatin1String("BusinessAddress") || name == QLatin1String("HomeAddress") || name == QLatin1String("OtherAddress"))
        return composedAddress(c, name.chopped(QStringLiteral("Address").size()));
    return {};
}

// --- reading -------------------------------------------------------------------------------------

std::optional<Date> birthdayOf(const QString& raw)
{
    const QString digits = QString(raw).remove(QLatin1Char('-')).left(8);
    const QDate d = QDate::fromString(digits, QStringLiteral("yyyyMMdd"));
    if (!d.isValid())
        return std::nullopt;
    return Date::fromQDate(d);
}

QStringList lowerTypes(const VCardLine& l)
{
    QStringList out;
    for (const QString& v : l.paramValues(QStringLiteral("TYPE")))
        for (const QString& t : v.split(QLatin1Char(','), Qt::SkipEmptyParts))
            out << t.trimmed().toLower();
    if (!l.paramValues(QStringLiteral("PREF")).isEmpty())
        out << QStringLiteral("pref");
    return out;
}

// Which telephone property a TEL line is, given those already taken.
QString phoneOf(const VCardLine& l, const ContactData& c)
{
    QStringList types = lowerTypes(l);
    types.removeAll(QStringLiteral("internet"));
    auto has = [&](const char* t) { return types.contains(QLatin1String(t)); };
    auto free = [&](const char* p) { return !c.stored.contains(QLatin1String(p)); };
    auto pick = [&](std::initializer_list<const char*> choices) -> QString {
        for (const char* p : choices)
            if (free(p))
                return QLatin1String(p);
        return {};
    };
    if (has("x-assistant")) return pick({"AssistantTelephoneNumber"});
    if (has("x-callback")) return pick({"CallbackTelephoneNumber"});
    if (has("x-main")) return pick({"CompanyMainTelephoneNumber"});
    if (has("car")) return pick({"CarTelephoneNumber"});
    if (has("pager")) return pick({"PagerNumber"});
    if (has("cell")) return pick({"MobileTelephoneNumber"});
    if (has("fax"))
        return has("work") ? pick({"BusinessFaxNumber"}) : has("home") ? pick({"HomeFaxNumber"}) : pick({"OtherFaxNumber"});
    if (has("work"))
        return has("x-2") ? pick({"Business2TelephoneNumber"}) : pick({"BusinessTelephoneNumber", "Business2TelephoneNumber"});
    if (has("home"))
        return has("x-2") ? pick({"Home2TelephoneNumber"}) : pick({"HomeTelephoneNumber", "Home2TelephoneNumber"});
    if (has("pref"))
        return pick({"PrimaryTelephoneNumber", "OtherTelephoneNumber"});
    return pick({"OtherTelephoneNumber"});
}

QString addressPrefixOf(const VCardLine& l)
{
    const QStringList types = lowerTypes(l);
    if (types.contains(QStringLiteral("work"))) return QStringLiteral("Business");
    if (types.contains(QStringLiteral("home"))) return QStringLiteral("Home");
    if (types.contains(QStringLiteral("postal"))) return QStringLiteral("Mailing");
    return QStringLiteral("Other");
}

// Maps one line; returns false if it is not mapped (and is to be kept as it stands).
bool readLine(ContactData& c, const VCardLine& l, QList<QPair<int, QString>>& emails)
{
    const QString& n = l.name;
    if (n == QLatin1String("UID")) { c.uid = l.text(); return true; }
    if (n == QLatin1String("VERSION") || n == QLatin1String("PRODID") || n == QLatin1String("REV")) return true;
    if (n == QLatin1String("FN")) {
        if (!c.stored.contains(QStringLiteral("FullName"))) c.stored.insert(QStringLiteral("FullName"), l.text());
        return true;
    }
    if (n == QLatin1String("N") || n == QLatin1String("ORG")) {
        const QStringList& names = n == QLatin1String("N") ? kNParts : kOrgParts;
        const QStringList parts = l.components();
        for (int i = 0; i < names.size() && i < parts.size(); ++i)
            if (!parts[i].isEmpty())
                c.stored.insert(names[i], parts[i]);
        return true;
    }
    if (n == QLatin1String("BDAY")) {
        const auto d = birthdayOf(l.text());
        if (d) c.stored.insert(QStringLiteral("Birthday"), *d);
        return d.has_value();
    }
    if (n == QLatin1String("EMAIL")) {
        const QString slot = l.paramValues(QStringLiteral("X-STEPLETS-SLOT")).value(0);
        const QStringList pref = l.paramValues(QStringLiteral("PREF"));
        int rank = 100 + emails.size();
        if (!slot.isEmpty()) rank = slot.toInt() - 10;
        else if (!pref.isEmpty()) rank = pref.first().toInt();
        else if (lowerTypes(l).contains(QStringLiteral("pref"))) rank = 1;
        emails << qMakePair(rank, l.text());
        return true;
    }
    if (n == QLatin1String("TEL")) {
        const QString p = phoneOf(l, c);
        if (p.isEmpty()) return false;
        c.stored.insert(p, l.text());
        return true;
    }
    if (n == QLatin1String("ADR")) {
        const QString a = addressPrefixOf(l) + QStringLiteral("Address");
        if (hasAddress(c, addressPrefixOf(l))) return false;
        const QStringList parts = l.components();
        for (const AdrPart& part : kAdrParts)
            if (part.index < parts.size() && !parts[part.index].isEmpty())
                c.stored.insert(a + QLatin1String(part.suffix), parts[part.index]);
        const QString label = l.paramValues(QStringLiteral("LABEL")).value(0);
        if (!label.isEmpty())
            c.stored.insert(a, VCardLine::unescape(label));
        return true;
    }
    if (n == QLatin1String("RELATED") && lowerTypes(l).contains(QStringLiteral("spouse"))
        && !c.stored.contains(QStringLiteral("Spouse"))) {
        c.stored.insert(QStringLiteral("Spouse"), l.text());
        return true;
    }
    for (const Single& s : kSingles) {
        if (n == QLatin1String(s.vcard) && !c.stored.contains(QLatin1String(s.property))) {
            c.stored.insert(QLatin1String(s.property), l.text());
            return true;
        }
    }
    if (n.startsWith(QLatin1String("X-STEPLETS-"))) {
        const QString canonical = canonicalContactProperty(n.mid(11));
        if (canonical.isEmpty()) return false;
        if (canonical == QLatin1String("Importance"))
            c.stored.insert(canonical, l.text().toInt());
        else
            c.stored.insert(canonical, l.text());
        return true;
    }
    return false;
}

} // namespace

const QStringList& contactFillInProperties()
{
    static const QStringList names = [] {
        QStringList out;
        for (const char* d : kDisplayNames)
            out << QString::fromLatin1(d).remove(QLatin1Char(' '));
        return out;
    }();
    return names;
}

QString canonicalContactProperty(const QString& name)
{
    for (const QString& n : contactFillInProperties() + kFurtherNames)
        if (n.compare(name, Qt::CaseInsensitive) == 0)
            return n;
    return {};
}

bool isComputedContactProperty(const QString& canonical) { return kComposed.contains(canonical); }

ContactType contactPropertyType(const QString& canonical)
{
    if (canonical == QLatin1String("Birthday")) return ContactType::Date;
    if (canonical == QLatin1String("Importance")) return ContactType::Number;
    return ContactType::Text;
}

Value contactValue(const ContactData& c, const QString& canonical)
{
    if (c.stored.contains(canonical))
        return c.stored.value(canonical);
    if (canonical == QLatin1String("Birthday"))
        return Value();
    if (canonical == QLatin1String("Importance"))
        return Value(1);
    return Value(computed(c, canonical));
}

void setContactValue(ContactData& c, const QString& canonical, const Value& value)
{
    const bool empty = value.isNull() || (value.type() == Value::Type::Text && value.toText().isEmpty())
                       || (value.type() == Value::Type::Date && value.toDate().isNoDate());
    if (empty)
        c.stored.remove(canonical);
    else
        c.stored.insert(canonical, value);
}

std::optional<ContactData> readContactCard(const QByteArray& vcf, QString* error)
{
    const std::optional<VCard> card = VCard::parse(vcf, error);
    if (!card)
        return std::nullopt;
    ContactData c;
    QList<QPair<int, QString>> emails;
    for (const VCardLine& l : card->lines)
        if (!readLine(c, l, emails))
            c.foreign << l;
    std::stable_sort(emails.begin(), emails.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (int i = 0; i < emails.size(); ++i) {
        if (i < 3)
            c.stored.insert(QStringLiteral("Email%1Address").arg(i + 1), emails[i].second);
    }
    // A full name that is just the parts put together is not a name of its own.
    if (str(c, QStringLiteral("FullName")) == composedFullName(c))
        c.stored.remove(QStringLiteral("FullName"));
    return c;
}

QByteArray writeContactCard(const ContactData& c)
{
    VCard card;
    card.add(QStringLiteral("VERSION"), QStringLiteral("4.0"));
    card.addText(QStringLiteral("UID"), c.uid);
    card.addText(QStringLiteral("FN"), computed(c, QStringLiteral("FullName")));
    QStringList n;
    for (const QString& part : kNParts)
        n << str(c, part);
    card.add(QStringLiteral("N"), VCardLine::joinComponents(n));
    if (c.stored.contains(QStringLiteral("CompanyName")) || c.stored.contains(QStringLiteral("Department")))
        card.add(QStringLiteral("ORG"), VCardLine::joinComponents({str(c, QStringLiteral("CompanyName")), str(c, QStringLiteral("Department"))}));
    QStringList handled = kNParts + kOrgParts + QStringList{QStringLiteral("FullName")};
    for (const Single& s : kSingles) {
        handled << QLatin1String(s.property);
        if (c.stored.contains(QLatin1String(s.property)))
            card.addText(QLatin1String(s.vcard), str(c, QLatin1String(s.property)),
                         qstrcmp(s.vcard, "URL") == 0 ? QList<VCardParam>{{QStringLiteral("TYPE"), {QStringLiteral("work")}}} : QList<VCardParam>{});
    }
    handled << QStringLiteral("Birthday");
    if (c.stored.contains(QStringLiteral("Birthday")))
        card.add(QStringLiteral("BDAY"), c.stored.value(QStringLiteral("Birthday")).toDate().date().toString(QStringLiteral("yyyyMMdd")));
    for (int i = 1; i <= 3; ++i) {
        const QString p = QStringLiteral("Email%1Address").arg(i);
        handled << p;
        if (c.stored.contains(p))
            card.addText(QStringLiteral("EMAIL"), str(c, p), {{QStringLiteral("X-STEPLETS-SLOT"), {QString::number(i + 10)}}});
    }
    for (const Phone& ph : phones()) {
        handled << QLatin1String(ph.property);
        if (c.stored.contains(QLatin1String(ph.property)))
            card.addText(QStringLiteral("TEL"), str(c, QLatin1String(ph.property)), {{QStringLiteral("TYPE"), ph.types}});
    }
    for (const Address& a : kAddresses) {
        const QString base = QLatin1String(a.prefix) + QStringLiteral("Address");
        handled << base;
        QStringList parts(7);
        for (const AdrPart& part : kAdrParts) {
            handled << base + QLatin1String(part.suffix);
            parts[part.index] = str(c, base + QLatin1String(part.suffix));
        }
        if (!hasAddress(c, QLatin1String(a.prefix)))
            continue;
        QList<VCardParam> params{{QStringLiteral("TYPE"), {QLatin1String(a.type)}}};
        if (c.stored.contains(base))
            params << VCardParam{QStringLiteral("LABEL"), {VCardLine::escape(str(c, base))}};
        card.add(QStringLiteral("ADR"), VCardLine::joinComponents(parts), params);
    }
    handled << QStringLiteral("Spouse");
    if (c.stored.contains(QStringLiteral("Spouse")))
        card.addText(QStringLiteral("RELATED"), str(c, QStringLiteral("Spouse")),
                     {{QStringLiteral("TYPE"), {QStringLiteral("spouse")}}, {QStringLiteral("VALUE"), {QStringLiteral("text")}}});
    for (auto it = c.stored.constBegin(); it != c.stored.constEnd(); ++it)
        if (!handled.contains(it.key()))
            card.addText(xName(it.key()), it.value().toText());
    for (const VCardLine& l : c.foreign)
        card.lines << l;
    return card.serialize();
}

} // namespace steplets::vdir
