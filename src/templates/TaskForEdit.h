#pragma once
// Editing a template happens on a real task again: the first row of the filtered template
// recordset becomes a new, saved task in the host's task folder, left in TemplateItem for the
// authoring flow to show. Its dates follow the date rules from the present moment (relative)
// or from ReferenceDate (anchor); fixed dates are rolled so that none lies in the past.
#include "DateRules.h"
#include "platform/runtime/Int16.h"

namespace steplets::modTasks {

// bEdit is not used. A failure reaches the caller only as an unset (or half-made) TemplateItem.
void CreateTaskFromTemplateForEdit(Bool16& bEdit, const Clock& now = uiClock());

} // namespace steplets::modTasks
