#pragma once
// The choice of several contacts for one processing run. The caller creates it with a reader of
// the chooser's in-memory contact list, calls SelectContactDialog, unloads it, and reads
// aSelectedContacts and bPromptCancelled from the session.
#include "controls/Buttons.h"
#include "controls/Form.h"
#include "controls/Lists.h"
#include "controls/TextControls.h"
#include <functional>

namespace steplets {

// The rows of a contact list in their order: text and item data (the ContactID) by position.
struct ContactListReader {
    std::function<int()> count;
    std::function<QString(int)> text;
    std::function<qint32(int)> itemData;
};
ContactListReader readerOf(const ContactCombo& combo);

class frmSelectContacts : public Form {
public:
    frmSelectContacts(UiHost& host, ContactListReader contacts);

    void SelectContactDialog(QString& sContact);

    Label hdrText{*this, QStringLiteral("hdrText")};
    Frame Frame1{*this, QStringLiteral("Frame1")};
    ListBox lbContacts{*this, QStringLiteral("lbContacts")};
    CommandButton OKButton{*this, QStringLiteral("OKButton")};
    CommandButton CancelButton{*this, QStringLiteral("CancelButton")};

    QString sExcludeContact;

    void lbContacts_Click();
    void OKButton_Click();
    void CancelButton_Click();

protected:
    void Form_Load() override;

private:
    void design();

    ContactListReader m_contacts;
};

} // namespace steplets
