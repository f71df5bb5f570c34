#pragma once
// A task as an iCalendar file: one VCALENDAR holding one VTODO, through libical.
#include "TaskData.h"
#include <QByteArray>
#include <QString>
#include <optional>

namespace steplets::vdir {

// Reads a file's content. A file that is empty, malformed, truncated or holds other than exactly
// one VTODO gives nothing, with the reason in *error.
std::optional<TaskData> readTaskCalendar(const QByteArray& ics, QString* error);

// Writes the task. With the earlier content of the file, what this backend does not map (other
// clients' properties, further alarms) is kept as it stood.
QByteArray writeTaskCalendar(const TaskData& task, const QByteArray& previous = {});

// The prefix of this backend's own X- properties.
QString taskExtraPrefix();

} // namespace steplets::vdir
