#include "FormatField.h"
#include "EditedTemplate.h"
#include "FillinCatalogue.h"
#include "platform/Guard.h"
#include "platform/OutlookGateway.h"
#include "platform/runtime/DateFormats.h"
#include "session/SessionContext.h"
#include <array>

namespace steplets::modTasks {

QString FieldSeparator() { return QStringLiteral(": "); }

namespace {

QString formatted(const Clock& now, const char* name)
{
    return DateFormats::current().format(now(), QString::fromLatin1(name));
}

// What one field adds when the subject is made for a contact.
void appendForContact(QString& sResult, int iCode, const QString& sTemplateSubject,
                      ol::ContactItem& contact, const Clock& now)
{
    const SessionContext& s = session();
    const QString sep = FieldSeparator();
    switch (iCode) {
    case fillin::UserName: sResult += s.sUserName + sep; break;
    case fillin::ContactTerm:
        if (!s.sContactName.isEmpty()) sResult += s.sContactName + sep;
        break;
    // The term itself, not the time card's value, goes into the subject.
    case fillin::MainActivityTerm:
        if (!s.sMainActivityTerm.isEmpty()) sResult += s.sMainActivityTerm + sep;
        break;
    case fillin::SubActivityTerm:
        if (!s.sSubActivityTerm.isEmpty()) sResult += s.sSubActivityTerm + sep;
        break;
    case fillin::JobOrderTerm:
        if (!s.sJobOrder.isEmpty()) sResult += s.sJobOrder + sep;
        break;
    case fillin::Description: sResult += s.sDesc + sep; break;
    case fillin::EntryType: sResult += s.sEntryType + sep; break;
    case fillin::Category: sResult += s.sCategory + sep; break;
    case fillin::CurrentDate:
        sResult += formatted(now, "dddd") + QStringLiteral(", ") + formatted(now, "Short Date") + sep;
        break;
    case fillin::CurrentTime: sResult += formatted(now, "Medium Time") + sep; break;
    // The answer is compared instead of appended: the text of a comparison that never holds
    // replaces everything composed so far.
    case fillin::PromptForUserInput:
        sResult = Bool16(sResult == sResult + s.sPromptResult + sep).text();
        break;
    case fillin::SubjectFromTemplate: sResult += sTemplateSubject + sep; break;
    default:
        if (iCode >= fillin::FirstContactProperty && iCode <= fillin::LastContactProperty)
            sResult += contact.get(ContactPropertyName(iCode)).textOrEmpty() + sep;
        break;
    }
}

// What one field adds when there is no contact: no contact rows, and several entries yield
// their separator even without a value.
void appendWithoutContact(QString& sResult, int iCode, const QString& sTemplateSubject, const Clock& now)
{
    const SessionContext& s = session();
    const QString sep = FieldSeparator();
    switch (iCode) {
    case fillin::UserName: sResult += s.sUserName + sep; break;
    case fillin::MainActivityTerm: sResult += s.sMainActivityTerm + sep; break;
    case fillin::SubActivityTerm: sResult += s.sSubActivityTerm + sep; break;
    case fillin::JobOrderTerm: sResult += s.sJobOrder + sep; break;
    case fillin::Description: sResult += s.sDesc + sep; break;
    case fillin::EntryType: sResult += s.sEntryType + sep; break;
    case fillin::Category: sResult += s.sCategory + sep; break;
    case fillin::CurrentDate: sResult += formatted(now, "Short Date") + sep; break;
    case fillin::CurrentTime: sResult += formatted(now, "Medium Time") + sep; break;
    case fillin::PromptForUserInput: sResult += s.sPromptResult + sep; break;
    case fillin::SubjectFromTemplate: sResult += sTemplateSubject + sep; break;
    default: break;                     // [Empty], unknown texts, the contact's term and rows
    }
}

// A property without a value must not leave an empty gap between two separators.
void dropDoubledSeparator(QString& sResult)
{
    static const QString doubled = FieldSeparator() + FieldSeparator();
    if (sResult.endsWith(doubled)) sResult.chop(FieldSeparator().size());
}

} // namespace

QString FormatField(const QString& sTemplateSubject, const std::shared_ptr<ol::ContactItem>& olContact,
                    const Clock& now)
{
    Guard g(QStringLiteral("modTasks: FormatField"));
    QString sResult;
    g.attempt([&] {
        EditedTemplateState& t = EditedTemplate();
        std::array<int, 4> aCodes{};
        g(20);
        for (int i = 0; i < 4; ++i) aCodes[i] = FillinCode(t.FillIn(i + 1));
        if (olContact) {
            g(30);
            for (int iCode : aCodes) {
                g(40); appendForContact(sResult, iCode, sTemplateSubject, *olContact, now);
                g(50); dropDoubledSeparator(sResult);
            }
            g(60);
            if (sResult == FieldSeparator()) sResult.clear();
        } else {
            g(70);
            for (int iCode : aCodes) {
                g(80); appendWithoutContact(sResult, iCode, sTemplateSubject, now);
            }
        }
        g(90);
        if (!sResult.isEmpty()) sResult.chop(2);
    });
    return sResult;
}

} // namespace steplets::modTasks
