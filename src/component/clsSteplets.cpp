#include "clsSteplets.h"
#include "chooser/frmSteplet.h"
#include "platform/Guard.h"
#include "session/modDLLErrHandler.h"
#include "session/modInitialize.h"

namespace steplets {

clsSteplets::clsSteplets(Ports ports) : m_ports(std::move(ports))
{
    modDLLErrHandler::InstallDiscipline();
}

clsSteplets::~clsSteplets() = default;

void clsSteplets::OpenSteplets(std::shared_ptr<ol::Application>& olApp, std::shared_ptr<ol::NameSpace>& olNS,
                               QString& sContactFolderEID, QString& sContactFolderSID, QString& sUserEID,
                               Value& sUserFldrSID, QString& sUserName, QString& sContactName, qint32& sContactID,
                               bool& bSelectContactByAcct, QString& sProvider, qint32& lTimeCardID,
                               bool& bManageContacts, QString& sContactTerm, QString& sMainActivityTerm,
                               QString& sSubActivityTerm, QString& sDesc, QString& sEntryType, QString& sCategory,
                               QString& sMainActivity, QString& sSubActivity, QString& sJobOrderTerm,
                               QString& sJobOrder, QString& sTaskFolderEID, QString& sTaskFolderSID)
{
    // The one routine that writes no trail entry; its handler reports and leaves.
    Guard g(Guard::Untraced{});
    SessionContext& s = session();
    // Before the first statement, so that a failure of any of them reaches the host's reporter.
    s.ports = m_ports;
    g.run([&] {
        g(10); s.olApp = olApp;
        g(20); s.olNS = olNS;
        g(30); s.sContactFolderEID = sContactFolderEID;
        g(40); s.sContactFolderSID = sContactFolderSID;
        g(50); s.sUserEID = sUserEID;
        g(60); s.sUserFldrSID = sUserFldrSID.toText();
        g(70); s.sUserName = sUserName;
        g(80); s.sContactName = sContactName;
        g(90); s.sContactID = sContactID;
        g(100); s.bSelectContactByAcct = bSelectContactByAcct;
        g(110); s.sProvider = sProvider;
        g(120); s.bManageContacts = bManageContacts;
        g(130); s.sContactTerm = sContactTerm;
        g(140); s.sMainActivityTerm = sMainActivityTerm;
        g(150); s.sSubActivityTerm = sSubActivityTerm;
        g(160); s.sDesc = sDesc;
        g(170); s.sEntryType = sEntryType;
        g(180); s.sCategory = sCategory;
        g(190); s.sMainActivity = sMainActivity;
        g(200); s.sSubActivity = sSubActivity;
        g(210); s.sJobOrderTerm = sJobOrderTerm;
        g(220); s.sJobOrder = sJobOrder;
        g(230); s.sTaskFolderEID = sTaskFolderEID;
        g(240); s.sTaskFolderSID = sTaskFolderSID;
        g(250); s.bNoTimeCard = (lTimeCardID == 0);
        g(260); s.lTimeCardID = s.bNoTimeCard ? 0 : lTimeCardID;
        g(270); modInitialize::GetRegSettings();
        g(280); modInitialize::OpenDB();
        g(290); if (!m_chooser) m_chooser = std::make_unique<frmSteplet>(s.ui());
        g(300); m_chooser->Show();
        g(310); m_chooser->Unload();
        g(320); m_chooser.reset();
    }, [&] { m_chooser.reset(); });
}

void HostArguments::callOn(clsSteplets& component)
{
    component.OpenSteplets(olApp, olNS, sContactFolderEID, sContactFolderSID, sUserEID, sUserFldrSID, sUserName,
                           sContactName, sContactID, bSelectContactByAcct, sProvider, lTimeCardID, bManageContacts,
                           sContactTerm, sMainActivityTerm, sSubActivityTerm, sDesc, sEntryType, sCategory,
                           sMainActivity, sSubActivity, sJobOrderTerm, sJobOrder, sTaskFolderEID, sTaskFolderSID);
}

} // namespace steplets
