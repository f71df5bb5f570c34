#pragma once
// The transcript of a played scenario: status, events, and the state of every store after the
// session, read back from the files themselves.
#include "Workspace.h"
#include "platform/runtime/Value.h"
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

namespace steplets::scenario {

// Every row of every table of both databases, {"local": {...}, "link": {...}}; a database whose
// file is not there has no member.
QJsonObject storeAfter(const Workspace& ws);

// Every value under the key "Steplets"; whole numbers as numbers, everything else as text.
QJsonObject settingsAfter(const Workspace& ws);

// The order in which items are listed: the scenario's own first, then those created in the
// session in the order of their first Save; anything else found after them, by name.
struct ItemOrder {
    QStringList givenTasks;
    QStringList givenContacts;
    QStringList created;
};

// {"tasks": [...], "contacts": [...]} with every property, links, user properties, the pattern
// of a recurring task and whether it was assigned.
QJsonObject outlookAfter(const Workspace& ws, const ItemOrder& order);

struct TranscriptParts {
    QString status = QStringLiteral("ok");
    QJsonArray events;
    QString errorTrail;
};

QJsonObject transcript(const TranscriptParts& parts, const Workspace& ws, const ItemOrder& order);

} // namespace steplets::scenario
