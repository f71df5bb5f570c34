#pragma once
// The one record of a session: the host's arguments, the settings, the connections and the four
// long-lived recordsets, the error trail and the values that windows hand over to each other.
// Reached through session(); OpenSteplets overwrites it on every call, and puts there the ports
// that the composition root gave clsSteplets.
#include "platform/runtime/Date.h"
#include "platform/runtime/Int16.h"
#include "platform/ErrorReporter.h"
#include <QString>
#include <array>
#include <functional>
#include <memory>

namespace steplets {

class Connection;
class Recordset;
class StoreGateway;
class SettingsGateway;
class SettingsKey;
class UiHost;
class ContactPicker;
class DateFormats;
namespace ol { class Application; class NameSpace; }

// What the composition root hands the component: one backend per port.
struct Ports {
    std::shared_ptr<StoreGateway> store;
    std::shared_ptr<SettingsGateway> settings;
    std::shared_ptr<UiHost> ui;
    ErrorReporterFactory errorReporter;
    // The component's own directory, where the databases lie (without a trailing separator).
    QString componentDirectory;
};

struct SessionContext {
    // The backends of this session, as the composition root gave them to clsSteplets.
    Ports ports;
    UiHost& ui() const;
    StoreGateway& store() const;
    SettingsGateway& settings() const;

    // Arguments of OpenSteplets.
    std::shared_ptr<ol::Application> olApp;
    std::shared_ptr<ol::NameSpace> olNS;
    QString sContactFolderEID;
    QString sContactFolderSID;
    QString sUserEID;
    QString sUserFldrSID;
    QString sUserName;
    QString sContactName;
    qint32 sContactID = 0;
    Bool16 bSelectContactByAcct;
    QString sProvider;
    qint32 lTimeCardID = 0;
    Bool16 bNoTimeCard;
    Bool16 bManageContacts;
    QString sContactTerm;
    QString sMainActivityTerm;
    QString sSubActivityTerm;
    QString sDesc;
    QString sEntryType;
    QString sCategory;
    QString sMainActivity;
    QString sSubActivity;
    QString sJobOrderTerm;
    QString sJobOrder;
    QString sTaskFolderEID;
    QString sTaskFolderSID;

    // Settings (GetRegSettings); index 0 of the arrays is unused.
    Int16 iTaskSelection;
    Int16 iLinkUser;
    Int16 iLinkUserIfNoContact;
    Bool16 bIntroduction;
    Bool16 bNewTaskDescription;
    std::array<QString, 5> sDefaultFillIn;
    std::array<QString, 5> sDefaultUserPrompt;
    std::shared_ptr<SettingsKey> settingsKey;         // only while in use
    bool bOptionsOpen = false;                        // set when the options dialog opens; read by nothing

    // Connections and the long-lived recordsets (OpenDB).
    std::shared_ptr<Connection> cnLocal;
    std::shared_ptr<Connection> cnLink;
    std::shared_ptr<Recordset> rsTemplates;
    std::shared_ptr<Recordset> rsContacts;
    std::shared_ptr<Recordset> rsGroups;
    std::shared_ptr<Recordset> rsAssignments;

    // Hand-over values.
    QString sContactEID;
    Int16 iContactMode;
    int iOutlookVersion = 0;
    BoundedArray<QString> aSelectedContacts;
    Bool16 bPromptCancelled;
    QString sPromptResult;
    Date dPromptAnchorDate;

    // Breadcrumbs of entered routines; only ever rolls, never reset, not even by a new session.
    QString ErrorTrail;
};

SessionContext& session();

} // namespace steplets
