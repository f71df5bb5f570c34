#include "FormatPreview.h"
#include "platform/runtime/DateFormats.h"
#include "session/SessionContext.h"
#include "templates/FillinCatalogue.h"
#include <initializer_list>

namespace steplets {

namespace {

struct Sample {
    std::initializer_list<const char*> names;   // contact properties sharing the sample
    const char* text;
};

// Samples of the contact property fill-ins, each with its separator. "Business Home Page" shares
// the telephone sample and "Company And Full Name" shows the company alone, as the preview
// always has.
const Sample kContactSamples[] = {
    {{"Account"}, "67853-45: "},
    {{"Assistant Name"}, "Pell, Rosa: "},
    {{"Billing Information"}, "30 Days Same as Cash: "},
    {{"Birthday"}, "09/12/1953: "},
    {{"Assistant Telephone Number", "Business 2 Telephone Number", "Business Fax Number", "Business Home Page",
      "Business Telephone Number", "Callback Telephone Number", "Car Telephone Number", "Company Main Telephone Number",
      "Home 2 Telephone Number", "Home Fax Number", "Home Telephone Number", "Mobile Telephone Number",
      "Other Fax Number", "Other Telephone Number", "Pager Number", "Primary Telephone Number"},
     "303-555-1212: "},
    {{"Business Address", "Home Address", "Mailing Address", "Other Address"}, "18 Larch Hollow Lane, Suite 440: "},
    {{"Business Address City", "Home Address City", "Mailing Address City", "Other Address City"}, "Fairmont: "},
    {{"Business Address Country", "Home Address Country", "Mailing Address Country", "Other Address Country"}, "USA: "},
    {{"Business Address Post Office Box", "Home Address Post Office Box", "Mailing Address Post Office Box",
      "Other Address Post Office Box"},
     "PO Box 193: "},
    {{"Business Address Postal Code", "Home Address Postal Code", "Mailing Address Postal Code", "Other Address Postal Code"},
     "55120-4475: "},
    {{"Business Address State", "Home Address State", "Mailing Address State", "Other Address State"}, "CO: "},
    {{"Business Address Street", "Home Address Street", "Mailing Address Street", "Other Address Street"},
     "18 Larch Hollow Lane: "},
    {{"Companies", "Company And Full Name", "Company Name"}, "Brackenfell Software Corporation: "},
    {{"Company Last First No Space"}, "Brackenfell Software CorporationHaskTobin: "},
    {{"Company Last First Space Only"}, "Brackenfell Software Corporation Hask Tobin: "},
    {{"Customer ID"}, "123456: "},
    {{"Department"}, "24: "},
    {{"Email 1 Address", "Email 2 Address", "Email 3 Address"}, "tobin.hask@larchhollow.example: "},
    {{"File As"}, "Hask, Tobin: "},
    {{"First Name"}, "Tobin: "},
    {{"Full Name"}, "Tobin A Hask: "},
    {{"Full Name And Company"}, "Tobin A Hask, Brackenfell Software Corporation: "},
    {{"Government ID Number"}, "84-12345645: "},
    {{"Importance"}, "HIgh: "},
    {{"Initials"}, "TH: "},
    {{"Job Title"}, "Percussionist: "},
    {{"Last First And Suffix"}, "Hask, Tobin Jr.: "},
    {{"Last First No Space"}, "HaskTobin: "},
    {{"Last First No Space And Suffix"}, "HaskTobin Jr.: "},
    {{"Last First No Space Company"}, "HaskTobinBrackenfellSoftwareCorporation: "},
    {{"Last First Space Only", "Last Name And First Name"}, "Hask Tobin: "},
    {{"Last First Space Only Company"}, "Hask Tobin Brackenfell Software Corporation: "},
    {{"Last Name"}, "Hask: "},
    {{"Manager Name"}, "Dunmore, Ira: "},
    {{"Middle Name"}, "A: "},
    {{"Nick Name"}, "Haskie: "},
    {{"Office Location"}, ""},   // the separator alone, which the field gets anyway: no trace of its own
    {{"Organizational ID Number"}, "789456: "},
    {{"Profession"}, "Rock and Roll Star: "},
    {{"Spouse"}, "Lina: "},
    {{"Subject"}, "Play Drums: "},
    {{"Title"}, "Sir: "},
    {{"User1", "User2", "User3", "User4"}, "User Field: "},
    {{"User Properties"}, "User Property: "},
};

// The sample of one fill-in in the order the rows are tried, the first match winning; false
// when no row matches.
bool sampleOf(const QString& fillin, bool jobOrderRow, const modTasks::Clock& now, QString& sample)
{
    const SessionContext& s = session();
    const QString card = modTasks::TimeCardSuffix();
    const DateFormats& f = DateFormats::current();
    const std::pair<QString, QString> first[] = {
        {QStringLiteral("User Name") + card, QStringLiteral("Tobin Hask: ")},
        {s.sContactTerm + card, QStringLiteral("Ira Dunmore: ")},
        {s.sMainActivityTerm + card, QStringLiteral("Rock Beat 101: ")},
        {s.sSubActivityTerm + card, QStringLiteral("1998 Session: ")},
    };
    for (const auto& [key, text] : first)
        if (fillin == key) return sample = text, true;
    if (jobOrderRow && fillin == s.sJobOrderTerm + card) return sample = QStringLiteral("555-55-5555: "), true;
    const std::pair<QString, QString> timeCard[] = {
        {QStringLiteral("Description") + card, QStringLiteral("Beginner review the rock beat fundamentals: ")},
        {QStringLiteral("Entry Type") + card, QStringLiteral("Task: ")},
        {QStringLiteral("Category") + card, QStringLiteral("Training: ")},
    };
    for (const auto& [key, text] : timeCard)
        if (fillin == key) return sample = text, true;
    if (fillin == QLatin1String("Current Date")) {
        const Date today = now();
        sample = f.format(today, QStringLiteral("dddd")) + QStringLiteral(", ") + f.format(today, QStringLiteral("Short Date"))
            + QStringLiteral(": ");
        return true;
    }
    if (fillin == QLatin1String("Current Time")) return sample = f.format(now(), QStringLiteral("Medium Time")) + QStringLiteral(": "), true;
    const QString property = modTasks::ContactPropertySuffix();
    if (fillin.endsWith(property)) {
        const QString name = fillin.chopped(property.size());
        for (const Sample& row : kContactSamples)
            for (const char* n : row.names)
                if (name == QLatin1String(n)) return sample = QString::fromUtf8(row.text), true;
    }
    if (fillin == modTasks::PromptFillin()) return sample = QStringLiteral("[User Input]"), true;
    if (fillin == modTasks::TemplateSubjectFillin()) return sample = QStringLiteral("[Task Template Subject]"), true;
    return false;
}

} // namespace

QString FormatPreview(const std::array<QString, 5>& sFillin, bool jobOrderRow, const modTasks::Clock& now)
{
    const QString sep = QStringLiteral(": ");
    QString result;
    for (int i = 1; i <= 4; ++i) {
        if (sFillin[i] == modTasks::EmptyFillin()) continue;
        QString sample;
        if (sampleOf(sFillin[i], jobOrderRow, now, sample)) result += sample;
        // A field without a sample of its own still stands for one, by its separator.
        if (!result.endsWith(sep)) result += sep;
    }
    if (!result.isEmpty()) result.chop(2);
    return result;
}

} // namespace steplets
