#pragma once
// A scenario file, read and checked as a whole before anything is set up, so that a malformed
// file is refused with a message naming the member (and the step) that is wrong.
#include "backends/scripted/Script.h"
#include "platform/runtime/Date.h"
#include "component/clsSteplets.h"
#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <optional>

namespace steplets::scenario {

// The task and contact store before the call.
struct OutlookSetup {
    QString version = QStringLiteral("11.0.5510");
    QString storeID = QStringLiteral("store");
    QList<QJsonObject> contacts;       // each with its EntryID (filled in when left out)
    // Tasks may also carry "Links" (contact EntryIDs), "UserProperties" ({"name", "type",
    // "value", "inFolderFields"}) and "RecurrencePattern" (pattern properties by name).
    QList<QJsonObject> tasks;
    // The task collection is moved out of the vdir when this many items of the session have been
    // saved, so the next first Save fails as on a vanished or unwritable folder; it is moved back
    // when the session has ended, before the transcript is read.
    std::optional<qint32> taskFolderGoneAfter;
};

struct Scenario {
    Date now;
    HostArguments host;                // olApp and olNS are added when the session starts
    OutlookSetup outlook;
    // Values under the key "Steplets", in file order; empty when the key is absent.
    QList<QPair<QString, QJsonValue>> settings;
    // The settings file is replaced by a folder of its name once the session has opened the
    // settings key this many times, so every later write fails as on a file that cannot be
    // written; it is put back when the session has ended, before the transcript is read.
    std::optional<qint32> settingsUnwritableAfter;
    QJsonObject storeRows;             // {"local": {...}, "link": {...}}
    bool missingLocal = false;
    bool missingLink = false;
    scripted::Script script;
    std::optional<QJsonValue> expect;
};

// The clock's start when the file names none.
Date defaultNow();

// Reads a whole file's content. On a malformed file returns nothing and puts one line into
// *error naming the member that is wrong ("host.lTimeCardID: expected a whole number").
// A "base" is looked for in `folder` (the scenario file's own folder).
std::optional<Scenario> parseScenario(const QByteArray& content, QString* error, const QString& folder = QString());

// The host's arguments as a scenario's host sends them when the file names none.
HostArguments defaultHostArguments();

} // namespace steplets::scenario
