#pragma once
// The component's one public class and its one operation: the top of the component, above the
// chooser it shows.
#include "session/SessionContext.h"
#include "platform/runtime/Value.h"
#include <memory>

namespace steplets {

class frmSteplet;

class clsSteplets {
public:
    // The backends a composition root chose; each session finds them in its SessionContext.
    explicit clsSteplets(Ports ports);
    ~clsSteplets();

    // Never raises: every failure is reported through the discipline and the call returns.
    void OpenSteplets(std::shared_ptr<ol::Application>& olApp, std::shared_ptr<ol::NameSpace>& olNS,
                      QString& sContactFolderEID, QString& sContactFolderSID, QString& sUserEID,
                      Value& sUserFldrSID, QString& sUserName, QString& sContactName, qint32& sContactID,
                      bool& bSelectContactByAcct, QString& sProvider, qint32& lTimeCardID,
                      bool& bManageContacts, QString& sContactTerm, QString& sMainActivityTerm,
                      QString& sSubActivityTerm, QString& sDesc, QString& sEntryType, QString& sCategory,
                      QString& sMainActivity, QString& sSubActivity, QString& sJobOrderTerm,
                      QString& sJobOrder, QString& sTaskFolderEID, QString& sTaskFolderSID);

private:
    Ports m_ports;
    std::unique_ptr<frmSteplet> m_chooser;
};

// The host's arguments by name, for programs that play the host; defaults as a host sends them
// when it has nothing to say.
struct HostArguments {
    std::shared_ptr<ol::Application> olApp;
    std::shared_ptr<ol::NameSpace> olNS;
    QString sContactFolderEID, sContactFolderSID, sUserEID;
    Value sUserFldrSID = QString();
    QString sUserName, sContactName;
    qint32 sContactID = 0;
    bool bSelectContactByAcct = false;
    QString sProvider;
    qint32 lTimeCardID = 0;
    bool bManageContacts = false;
    QString sContactTerm, sMainActivityTerm, sSubActivityTerm, sDesc, sEntryType, sCategory,
        sMainActivity, sSubActivity, sJobOrderTerm, sJobOrder, sTaskFolderEID, sTaskFolderSID;

    void callOn(clsSteplets& component);
};

} // namespace steplets
