#pragma once
// Matching a scenario's `expect` against its transcript. Objects match member by member, arrays
// in order with gaps, scalars by equality; objects whose members begin with "$" are operators
// ($absent, $present, $count with optional $items, $exactly, $none, $countOf with n, $prefix).
#include <QJsonValue>
#include <QString>

namespace steplets::scenario {

// Empty when every operator in the pattern is known and well formed; else one line naming the
// place ("expect.events[2]: unknown operator \"$cont\"").
QString checkPattern(const QJsonValue& pattern, const QString& path);

// Empty when the transcript matches; else a readable difference: the path of the first
// mismatch, what was expected and what is there.
QString firstMismatch(const QJsonValue& pattern, const QJsonValue& actual);

// A short one-line rendering of a JSON value for messages.
QString brief(const QJsonValue& v);

} // namespace steplets::scenario
