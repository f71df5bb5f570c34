#pragma once
// The subject preview of the template options and user options dialogs: the four fill-ins
// joined by ": ", each shown by a sample of one invented person, so the user sees the shape of
// a subject before any contact or time card is at hand. Only the user options form knows a
// sample for the job-order fill-in.
#include "templates/DateRules.h"
#include <QString>
#include <array>

namespace steplets {

// `sFillin` from index 1; the host's terms are read from the session, the date and time from
// `now` in the named formats.
QString FormatPreview(const std::array<QString, 5>& sFillin, bool jobOrderRow, const modTasks::Clock& now);

} // namespace steplets
