#pragma once
// Shared scenario data: a scenario may name, as "base", a data file (or a list of them, laid one
// over the other in order) whose "now", "host", "settings", "store" and "outlook" it starts from. The scenario's own members are laid over it:
// host arguments and settings by name; store rows by their key ("ID", else "ContactID"),
// outlook items by "EntryID", member by member, rows and items the base lacks appended in the
// scenario's order; anything else the scenario gives replaces the base's. A data file may name a
// base of its own, and may give "defaults": per table, the columns each row of that table takes
// where it names none (so a template row need state only what sets it apart).
#include <QJsonObject>
#include <QString>
#include <optional>

namespace steplets::scenario {

// The scenario with its base laid under it and no "base" member left; the file itself when it
// names none. `folder` is where a relative base is found (the scenario file's folder). Nothing
// and one line in *error when a base cannot be read or is malformed.
std::optional<QJsonObject> withBase(const QJsonObject& scenario, const QString& folder, QString* error);

} // namespace steplets::scenario
