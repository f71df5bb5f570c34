#include "FillinCatalogue.h"
#include "controls/Lists.h"
#include "platform/Guard.h"
#include "session/SessionContext.h"
#include <QHash>

namespace steplets::modTasks {

QString TimeCardSuffix() { return QStringLiteral(" (from current TimeCard)"); }
QString ContactPropertySuffix() { return QStringLiteral(" (Outlook Contact Property)"); }
QString EmptyFillin() { return QStringLiteral("[Empty]"); }
QString PromptFillin() { return QStringLiteral("Prompt for user input"); }
QString TemplateSubjectFillin() { return QStringLiteral("Subject field from template"); }

const QStringList& ContactFillinNames()
{
    static const QStringList names = {
        "Account", "Assistant Name", "Assistant Telephone Number", "Billing Information", "Birthday",
        "Business 2 Telephone Number", "Business Address", "Business Address City",
        "Business Address Country", "Business Address Post Office Box", "Business Address Postal Code",
        "Business Address State", "Business Address Street", "Business Fax Number",
        "Business Home Page", "Business Telephone Number", "Callback Telephone Number",
        "Car Telephone Number", "Companies", "Company And Full Name", "Company Last First No Space",
        "Company Last First Space Only", "Company Main Telephone Number", "Company Name",
        "Customer ID", "Department", "Email 1 Address", "Email 2 Address", "Email 3 Address",
        "File As", "First Name", "Full Name", "Full Name And Company", "Government ID Number",
        "Home 2 Telephone Number", "Home Address", "Home Address City", "Home Address Country",
        "Home Address Post Office Box", "Home Address Postal Code", "Home Address State",
        "Home Address Street", "Home Fax Number", "Home Telephone Number", "Importance", "Initials",
        "Job Title", "Last First And Suffix", "Last First No Space", "Last First No Space And Suffix",
        "Last First No Space Company", "Last First Space Only", "Last First Space Only Company",
        "Last Name", "Last Name And First Name", "Mailing Address", "Mailing Address City",
        "Mailing Address Country", "Mailing Address Post Office Box", "Mailing Address Postal Code",
        "Mailing Address State", "Mailing Address Street", "Manager Name", "Middle Name",
        "Mobile Telephone Number", "Nick Name", "Office Location", "Organizational ID Number",
        "Other Address", "Other Address City", "Other Address Country", "Other Address Post Office Box",
        "Other Address Postal Code", "Other Address State", "Other Address Street", "Other Fax Number",
        "Other Telephone Number", "Pager Number", "Primary Telephone Number", "Profession", "Spouse",
        "Subject", "Title", "User1", "User2", "User3", "User4", "User Properties"};
    return names;
}

QString ContactPropertyName(int iCode)
{
    const int i = iCode - fillin::FirstContactProperty;
    if (i < 0 || i >= ContactFillinNames().size()) throw Failure::subscript();
    QString name = ContactFillinNames().at(i);
    return name.remove(QLatin1Char(' '));
}

namespace {

struct TermRow {
    const QString SessionContext::*term;
    int code;
};

// The four rows named by the host's words, in list order.
const TermRow kTermRows[] = {
    {&SessionContext::sContactTerm, fillin::ContactTerm},
    {&SessionContext::sMainActivityTerm, fillin::MainActivityTerm},
    {&SessionContext::sSubActivityTerm, fillin::SubActivityTerm},
    {&SessionContext::sJobOrderTerm, fillin::JobOrderTerm},
};

QList<FillinEntry> leadingRows()
{
    return {{EmptyFillin(), fillin::Empty},
            {QStringLiteral("User Name") + TimeCardSuffix(), fillin::UserName}};
}

QList<FillinEntry> trailingRows()
{
    QList<FillinEntry> rows = {
        {QStringLiteral("Description") + TimeCardSuffix(), fillin::Description},
        {QStringLiteral("Entry Type") + TimeCardSuffix(), fillin::EntryType},
        {QStringLiteral("Category") + TimeCardSuffix(), fillin::Category},
        {QStringLiteral("Current Date"), fillin::CurrentDate},
        {QStringLiteral("Current Time"), fillin::CurrentTime},
    };
    int code = fillin::FirstContactProperty;
    for (const QString& name : ContactFillinNames()) rows.append({name + ContactPropertySuffix(), code++});
    rows.append({PromptFillin(), fillin::PromptForUserInput});
    rows.append({TemplateSubjectFillin(), fillin::SubjectFromTemplate});
    return rows;
}

// The texts that do not depend on the session are unique, so one lookup finds the first match
// once the session's term rows have had their turn.
const QHash<QString, int>& fixedCodes()
{
    static const QHash<QString, int> codes = [] {
        QHash<QString, int> h;
        for (const FillinEntry& e : leadingRows() + trailingRows()) h.insert(e.text, e.code);
        return h;
    }();
    return codes;
}

bool isTermText(const QString& text, const QString& term, const QString& suffix)
{
    return text.size() == term.size() + suffix.size() && text.startsWith(term) && text.endsWith(suffix);
}

} // namespace

QList<FillinEntry> FillinCatalogue()
{
    QList<FillinEntry> rows = leadingRows();
    for (const TermRow& t : kTermRows) {
        const QString& term = session().*(t.term);
        if (!term.isEmpty()) rows.append({term + TimeCardSuffix(), t.code});
    }
    return rows + trailingRows();
}

int FillinCode(const QString& sFillin)
{
    static const QString suffix = TimeCardSuffix();
    static const QString userName = QStringLiteral("User Name") + TimeCardSuffix();
    if (sFillin == EmptyFillin()) return fillin::Empty;
    if (sFillin == userName) return fillin::UserName;
    if (sFillin.endsWith(suffix)) {
        for (const TermRow& t : kTermRows)
            if (isTermText(sFillin, session().*(t.term), suffix)) return t.code;
    }
    return fixedCodes().value(sFillin, fillin::Empty);
}

void LoadFillins(ComboBox& cbo)
{
    // Deliberately "Steplets", not "modTasks": the trail reports show for this routine.
    Guard g(QStringLiteral("Steplets: LoadFillins"));
    // Each row is two statements; a failing one is reported and the next one runs.
    auto addRow = [&](int line, const QString& text, int code) {
        g.step(line, [&] { cbo.AddItem(text); });
        g.step(line + 10, [&] { cbo.setItemData(cbo.NewIndex(), code); });
    };
    int line = 10;
    for (const FillinEntry& e : leadingRows()) {
        addRow(line, e.text, e.code);
        line += 20;
    }
    for (const TermRow& t : kTermRows) {
        const QString& term = session().*(t.term);
        if (!term.isEmpty()) addRow(line, term + TimeCardSuffix(), t.code);
        line += 20;
    }
    for (const FillinEntry& e : trailingRows()) {
        addRow(line, e.text, e.code);
        line += 20;
    }
}

} // namespace steplets::modTasks
