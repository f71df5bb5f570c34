#pragma once
// The one reporting routine and the trail: only the first failure of the process is reported.
#include "platform/Guard.h"
#include <QString>

namespace steplets::modDLLErrHandler {

void ReportError(const QString& sDescription, const QString& sNumber, const QString& sSource,
                 const QString& sLocation);

// major.minor.revision of the component, each without leading zeros.
QString VersionText();

// Makes every Guard of the process use the session's trail and ReportError.
void InstallDiscipline();

// How many failures ReportError has seen in this process (reported or not).
int FailureCount();

} // namespace steplets::modDLLErrHandler
