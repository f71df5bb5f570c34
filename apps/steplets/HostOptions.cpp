#include "HostOptions.h"
#include "backends/vdir/DemoContacts.h"
#include <QCommandLineParser>
#include <functional>
#include <limits>

namespace steplets::desktop {

namespace {

// One option of the command line and where its value goes.
struct ArgumentOption {
    const char* name;
    const char* valueName;       // nullptr: a switch
    const char* help;
    std::function<bool(HostArguments&, const QString&)> store;
};

bool storeText(QString& field, const QString& value) { field = value; return true; }

bool storeNumber(qint32& field, const QString& value)
{
    bool ok = false;
    const qlonglong n = value.toLongLong(&ok);
    if (!ok || n < std::numeric_limits<qint32>::min() || n > std::numeric_limits<qint32>::max()) return false;
    field = static_cast<qint32>(n);
    return true;
}

#define TEXT(field) [](HostArguments& a, const QString& v) { return storeText(a.field, v); }
#define NUMBER(field) [](HostArguments& a, const QString& v) { return storeNumber(a.field, v); }
#define SWITCH(field) [](HostArguments& a, const QString&) { a.field = true; return true; }

const QList<ArgumentOption>& argumentOptions()
{
    static const QList<ArgumentOption> options = {
        {"contact-folder", "EID", "EntryID of the contact folder (sContactFolderEID).", TEXT(sContactFolderEID)},
        {"contact-folder-store", "SID", "StoreID of the contact folder (sContactFolderSID).", TEXT(sContactFolderSID)},
        {"user-entry", "EID", "EntryID of the user's own contact (sUserEID).", TEXT(sUserEID)},
        {"user-folder-store", "SID", "StoreID that goes with the user's contact (sUserFldrSID).",
         [](HostArguments& a, const QString& v) { a.sUserFldrSID = v; return true; }},
        {"user-name", "NAME", "Display name of the user (sUserName).", TEXT(sUserName)},
        {"contact-name", "NAME", "Name of the contact open in the host (sContactName).", TEXT(sContactName)},
        {"contact-id", "N", "tblContacts key of that contact, 0 for none (sContactID).", NUMBER(sContactID)},
        {"select-contact-by-account", nullptr, "Sort contacts by account (bSelectContactByAcct).", SWITCH(bSelectContactByAcct)},
        {"provider", "TEXT", "Link provider of the linked admin table; empty leaves it (sProvider).", TEXT(sProvider)},
        {"time-card", "N", "Time card the tasks belong to; 0 keeps templates instead (lTimeCardID).", NUMBER(lTimeCardID)},
        {"manage-contacts", nullptr, "Contacts may be managed from the contact tool (bManageContacts).", SWITCH(bManageContacts)},
        {"contact-term", "WORD", "The host's word for a contact (sContactTerm).", TEXT(sContactTerm)},
        {"main-activity-term", "WORD", "The host's word for a main activity (sMainActivityTerm).", TEXT(sMainActivityTerm)},
        {"sub-activity-term", "WORD", "The host's word for a sub activity (sSubActivityTerm).", TEXT(sSubActivityTerm)},
        {"description", "TEXT", "Description of the time card (sDesc).", TEXT(sDesc)},
        {"entry-type", "TEXT", "Entry type of the time card (sEntryType).", TEXT(sEntryType)},
        {"category", "TEXT", "Category of the time card (sCategory).", TEXT(sCategory)},
        {"main-activity", "TEXT", "Main activity of the time card (sMainActivity).", TEXT(sMainActivity)},
        {"sub-activity", "TEXT", "Sub activity of the time card (sSubActivity).", TEXT(sSubActivity)},
        {"job-order-term", "WORD", "The host's word for a job order (sJobOrderTerm).", TEXT(sJobOrderTerm)},
        {"job-order", "TEXT", "Job order of the time card (sJobOrder).", TEXT(sJobOrder)},
        {"task-folder", "EID", "EntryID of the task folder that receives the tasks (sTaskFolderEID).", TEXT(sTaskFolderEID)},
        {"task-folder-store", "SID", "StoreID of the task folder (sTaskFolderSID).", TEXT(sTaskFolderSID)},
    };
    return options;
}

#undef TEXT
#undef NUMBER
#undef SWITCH

} // namespace

HostOptions defaultHostOptions()
{
    HostOptions o;
    HostArguments& a = o.args;
    const vdir::DemoContact& user = vdir::demoUser();
    a.sContactFolderEID = QStringLiteral("contacts");
    a.sContactFolderSID = QStringLiteral("store");
    a.sUserEID = user.entryId;
    a.sUserFldrSID = QStringLiteral("store");
    a.sUserName = user.fullName();
    a.sContactTerm = QStringLiteral("Client");
    a.sMainActivityTerm = QStringLiteral("Activity");
    a.sSubActivityTerm = QStringLiteral("Sub Activity");
    a.sJobOrderTerm = QStringLiteral("Job Order");
    a.sTaskFolderEID = QStringLiteral("tasks");
    a.sTaskFolderSID = QStringLiteral("store");
    return o;
}

ParsedCommandLine parseCommandLine(const QStringList& arguments)
{
    ParsedCommandLine result;
    result.options = defaultHostOptions();

    // 1. The options: the host's arguments, then the program's own.
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Steplets, the task-template manager, opened as a time-and-billing host would open it.\n"
        "Without --time-card it keeps templates and groups; with one it processes them.\n"
        "On first start with no databases it creates the embedded demo data."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help and leave."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version and leave."));
    parser.addOption(help);
    parser.addOption(version);
    const QCommandLineOption home(QStringLiteral("home"),
                                  QStringLiteral("The component's directory: databases, vdir, settings "
                                                 "(default: $STEPLETS_HOME, else the per-user data directory)."),
                                  QStringLiteral("DIR"));
    const QCommandLineOption outlookVersion(QStringLiteral("outlook-version"),
                                            QStringLiteral("Version the task store reports (default 11.0.5510)."),
                                            QStringLiteral("V"));
    const QCommandLineOption play(QStringLiteral("play"),
                                  QStringLiteral("Play the steps of a scenario file's script as the user's input, "
                                                 "on a clock that starts now and moves from timer to timer."),
                                  QStringLiteral("FILE"));
    parser.addOption(home);
    parser.addOption(outlookVersion);
    parser.addOption(play);
    QList<QCommandLineOption> hostOptions;
    for (const ArgumentOption& o : argumentOptions()) {
        hostOptions << (o.valueName ? QCommandLineOption(QLatin1String(o.name), QLatin1String(o.help), QLatin1String(o.valueName))
                                    : QCommandLineOption(QLatin1String(o.name), QLatin1String(o.help)));
        parser.addOption(hostOptions.back());
    }

    // 2. Parse; help and version win over everything else.
    if (!parser.parse(arguments)) {
        result.outcome = ParsedCommandLine::Outcome::Error;
        result.text = parser.errorText();
        return result;
    }
    if (parser.isSet(help)) {
        result.outcome = ParsedCommandLine::Outcome::Help;
        result.text = parser.helpText().replace(QStringLiteral("<executable_name>"), QStringLiteral("steplets"));
        return result;
    }
    if (parser.isSet(version)) {
        result.outcome = ParsedCommandLine::Outcome::Version;
        return result;
    }
    if (!parser.positionalArguments().isEmpty()) {
        result.outcome = ParsedCommandLine::Outcome::Error;
        result.text = QStringLiteral("unexpected argument '%1'").arg(parser.positionalArguments().first());
        return result;
    }

    // 3. Each given option into its argument; a number that is not one is named.
    for (int i = 0; i < hostOptions.size(); ++i) {
        if (!parser.isSet(hostOptions[i])) continue;
        const ArgumentOption& o = argumentOptions()[i];
        const QString value = o.valueName ? parser.value(hostOptions[i]) : QString();
        if (!o.store(result.options.args, value)) {
            result.outcome = ParsedCommandLine::Outcome::Error;
            result.text = QStringLiteral("--%1 needs a whole number, not '%2'").arg(QLatin1String(o.name), value);
            return result;
        }
    }
    result.options.home = parser.value(home);
    if (parser.isSet(outlookVersion)) result.options.outlookVersion = parser.value(outlookVersion);
    result.options.playFile = parser.value(play);
    return result;
}

} // namespace steplets::desktop
