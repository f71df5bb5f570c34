// The contact area of frmSteplet: the one contact of txtContact, chosen or cleared with the tool
// bar, and the two check boxes that switch to several contacts chosen at launch.
#include "frmSteplet.h"
#include "platform/runtime/Constants.h"
#include "platform/ContactPicker.h"
#include "platform/Guard.h"
#include "platform/OutlookGateway.h"
#include "platform/StoreGateway.h"
#include "platform/UiHost.h"
#include "session/SessionContext.h"
#include <cmath>

namespace steplets {

namespace {
constexpr int kToolSelect = 0;
constexpr int kToolClear = 3;

// The run-time's CLng: halves go to the even neighbour.
qint32 roundedLong(double v) { return static_cast<qint32>(std::nearbyint(v)); }
} // namespace

void frmSteplet::abSelectContact_ToolClick(Tool& tool)
{
    Guard g(name() + QStringLiteral(": abSelectContact_ToolClick"));
    SessionContext& s = session();
    g.step(20, [&] { host().setScreenMousePointer(Control::Hourglass); });
    int id = -1;
    g.step(30, [&] { id = tool.ToolID(); });
    if (id == kToolClear) {
        g.step(40, [&] { txtContact.setText(QString()); });
        g.step(50, [&] { txtContact.setTag(QString()); });
        g.step(60, [&] { s.sContactEID.clear(); });
        g.step(70, [&] { must(abSelectContact.tool(QStringLiteral("Tool3"))).setEnabled(false); });
    } else if (id == kToolSelect) {
        std::unique_ptr<ContactPicker> picker;
        g.step(80, [&] { picker = createContactPicker(s.iOutlookVersion, host(), s.store(), s.olNS); });
        g.step(90, [&] {
            qint32 top = roundedLong(Top()), left = roundedLong(Left());
            qint32 width = roundedLong(Width()), height = roundedLong(Height());
            qint32 option = 2, flags = 16;
            QString none1, none2, none3, none4, none5, none6, none7;
            must(picker).ShowPicker(s.cnLink, s.lTimeCardID, s.sProvider, option, s.sContactFolderEID,
                                    s.sContactFolderSID, none1, s.bManageContacts, flags, none2, none3, none4,
                                    none5, none6, none7, top, left, width, height, nullptr);
        });
        g.step(100, [&] {
            Tool& clear = must(abSelectContact.tool(QStringLiteral("Tool3")));
            if (must(picker).ContactID() != 0) {
                txtContact.setText(picker->ContactName());
                txtContact.setTag(QString::number(picker->ContactID()));
                s.sContactEID = picker->ContactEntryID();
                clear.setEnabled(true);
            } else {
                clear.setEnabled(!txtContact.Text().isEmpty());
            }
        });
        g.step(110, [&] { picker.reset(); });
    }
    g.step(120, [&] { abSelectContact.Refresh(); });
    g.step(130, [&] { host().setScreenMousePointer(Control::Default); });
}

// The twin handlers of the two check boxes: one switches the other off while it is ticked.
void frmSteplet::contactOptionClick(const QString& literal, CheckBox& option, CheckBox& twin, int mode)
{
    Guard g(literal);
    g.run([&] {
        Tool& select = must(abSelectContact.tool(QStringLiteral("Tool0")));
        Tool& clear = must(abSelectContact.tool(QStringLiteral("Tool3")));
        g(20); if (option.Value() == CheckBox::Checked) {
            g(30); select.setEnabled(false);
            clear.setEnabled(false);
            g(40); twin.setEnabled(false);
            g(50); session().iContactMode = Int16::from(static_cast<long long>(mode));
        } else {
            g(60); select.setEnabled(true);
            g(70); clear.setEnabled(!txtContact.Text().isEmpty());
            g(80); twin.setEnabled(true);
            g(90); session().iContactMode = contactMode::OneOrNone;
        }
        g(100); abSelectContact.Refresh();
    }, [&] { Unload(); });
}

void frmSteplet::chkContactOption1_Click()
{
    contactOptionClick(QStringLiteral("frmSteplet: chkContactOption1_Click"), chkContactOption1, chkContactOption2, 1);
}

void frmSteplet::chkContactOption2_Click()
{
    contactOptionClick(QStringLiteral("frmSteplet: chkContactOption2_Click"), chkContactOption2, chkContactOption1, 2);
}

void frmSteplet::txtContact_GotFocus()
{
    txtContact.setSelStart(0);
    txtContact.setSelLength(txtContact.Text().size());
}

void frmSteplet::txtContact_KeyDown(int& KeyCode, int Shift)
{
    (void)Shift;
    if (KeyCode == Control::KeyReturn) txtContact_Click();
}

void frmSteplet::txtContact_MouseMove(int Button, int Shift, double X, double Y)
{
    (void)Button;
    (void)Shift;
    (void)X;
    (void)Y;
    txtContact.setMousePointer(txtContact.Text().isEmpty() ? Control::Arrow : Control::Custom);
}

void frmSteplet::txtContact_Click()
{
    Guard g(name() + QStringLiteral(": txtContact_Click"));
    SessionContext& s = session();
    if (txtContact.Text().isEmpty() || !s.bManageContacts) return;
    std::shared_ptr<Recordset> rs;
    std::shared_ptr<ol::Item> item;
    g.step(20, [&] { rs = s.store().CreateRecordset(); });
    g.step(30, [&] {
        must(rs).Open(QStringLiteral("SELECT ContactEntryID FROM tblContacts WHERE ContactID = ") + txtContact.Tag(),
                      s.cnLink, ado::adOpenStatic, ado::adLockReadOnly);
    });
    g.step(40, [&] {
        if (must(rs).RecordCount() != 1) return;
        const QString entryID = rs->Fields(0).value().toText();
        g.ignoring(50, [&] { item = must(s.olNS).GetItemFromID(entryID, s.sContactFolderSID); });
        if (g.lastError() != 0) {
            g.clearError();
            return;
        }
        g(60); must(item).Display();
    });
    g.step(70, [&] {
        item.reset();
        rs.reset();
    });
}

} // namespace steplets
