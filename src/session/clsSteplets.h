#pragma once
// The component's one public class and its one operation.
#include "SessionContext.h"
#include "platform/runtime/Value.h"
#include <functional>
#include <memory>

namespace steplets {

// The main window of a session as OpenSteplets needs it: shown modally, then unloaded.
class SessionWindow {
public:
    virtual ~SessionWindow() = default;
    virtual void ShowModal() = 0;    // returns when the window is hidden or unloaded
    virtual void Unload() = 0;
};
using SessionWindowFactory = std::function<std::unique_ptr<SessionWindow>()>;

class clsSteplets {
public:
    explicit clsSteplets(SessionWindowFactory chooserFactory);

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
    SessionWindowFactory m_chooserFactory;
    std::unique_ptr<SessionWindow> m_chooser;
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
