#include "frmSelectContacts.h"
#include "platform/runtime/Constants.h"
#include "platform/Guard.h"
#include "platform/StoreGateway.h"
#include "session/SessionContext.h"

namespace steplets {

ContactListReader readerOf(const ContactCombo& combo)
{
    return {[&combo] { return combo.ListCount(); }, [&combo](int i) { return combo.List(i); },
            [&combo](int i) { return combo.ItemData(i); }};
}

frmSelectContacts::frmSelectContacts(UiHost& host, ContactListReader contacts)
    : Form(host, QStringLiteral("frmSelectContacts")), m_contacts(std::move(contacts))
{
    design();
    lbContacts.Click.connect([this] { lbContacts_Click(); });
    OKButton.Click.connect([this] { OKButton_Click(); });
    CancelButton.Click.connect([this] { CancelButton_Click(); });
}

void frmSelectContacts::design()
{
    setCaption(QStringLiteral(" Select Contacts"));
    setWidth(5280);
    setHeight(5400);
    hdrText.Move(120, 120, 4995, 615);
    Frame1.setCaption(QStringLiteral("Select Contacts"));
    Frame1.Move(120, 840, 4995, 3855);
    lbContacts.setContainer(&Frame1);
    lbContacts.setMultiSelect(ListBox::MultiSelect::Simple);
    lbContacts.Move(120, 240, 4755, 3495);
    OKButton.setCaption(QStringLiteral("C&ontinue"));
    OKButton.setEnabled(false);
    OKButton.setDefault(true);
    OKButton.Move(2640, 4800, 1215, 375);
    CancelButton.setCaption(QStringLiteral("&Cancel"));
    CancelButton.setCancel(true);
    CancelButton.Move(3900, 4800, 1215, 375);
}

void frmSelectContacts::SelectContactDialog(QString& sContact)
{
    sExcludeContact = sContact;
    Show();
}

void frmSelectContacts::Form_Load()
{
    Guard g(QStringLiteral("frmSelectContacts: Form_Load"));
    SessionContext& s = session();
    g.attempt([&] {
        g(20); const int count = m_contacts.count();
        for (int i = 0; i < count; ++i) {
            g(30); const QString text = m_contacts.text(i);
            g(40); if (text.isEmpty()) continue;
            g(50); if (s.iContactMode == contactMode::Linked && text == sExcludeContact) continue;
            g(60); lbContacts.AddItem(text);
            g(70); lbContacts.setItemData(lbContacts.NewIndex(), m_contacts.itemData(i));
        }
        g(80); if (s.iContactMode == contactMode::Linked)
            hdrText.setCaption(QStringLiteral("Select the contacts to link to the task(s) you are processing.  "
                                              "A separate task will be processed for each contact selected."));
        else if (s.iContactMode == contactMode::SeparatePasses)
            hdrText.setCaption(QStringLiteral("Select the contacts to link to the task(s) you are processing.  "
                                              "Each contact selected below will be linked to each task processed."));
    });
}

void frmSelectContacts::lbContacts_Click()
{
    Guard g(QStringLiteral("frmSelectContacts: lbContacts_Click"));
    g.attempt([&] {
        g(20); OKButton.setEnabled(lbContacts.SelCount() != 0);
    });
}

void frmSelectContacts::OKButton_Click()
{
    Guard g(QStringLiteral("frmSelectContacts: OKButton_Click"));
    SessionContext& s = session();
    g.attempt([&] {
        Recordset& contacts = must(s.rsContacts);
        g(20); s.aSelectedContacts.redim(1, lbContacts.SelCount());
        g(30); long n = 1;
        for (int i = 0; i < lbContacts.ListCount(); ++i) {
            g(40); if (!lbContacts.Selected(i)) continue;
            g(50); contacts.Filter(QStringLiteral("ContactID = ") + QString::number(lbContacts.ItemData(i)));
            g(60); if (contacts.RecordCount() == 1) {
                g(70); s.aSelectedContacts[n] = contacts.Fields(1).value().toText();
                ++n;
            }
            g(80); contacts.Filter(0L);
        }
        g(90); Unload();
    });
}

void frmSelectContacts::CancelButton_Click()
{
    Guard g(QStringLiteral("frmSelectContacts: CancelButton_Click"));
    g.attempt([&] {
        g(20); session().bPromptCancelled = true;
        g(30); Unload();
    });
}

} // namespace steplets
