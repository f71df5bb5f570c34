#pragma once
// How a template is authored: its options in frmNewTask, then a real, temporary task shown on the
// task form, whose properties become the template's row when the user saves it. ProcessAdd makes
// a new template, ProcessEdit changes the one the chooser has filtered to. These routines belong
// to modTasks, the template module; they live beside the dialogs because they create them.
#include "platform/runtime/Int16.h"
#include <QString>

namespace steplets::modTasks {

// True if the user left frmNewTask to go on to the task form; EditedTemplate then holds the
// dialog's choices.
Bool16 SetTemplateOptions(Bool16& bEdit, QString& sTemplateName);
// True if a new row now exists.
Bool16 ProcessAdd();
// Works on the current row of the template recordset; ends by resetting the edited template,
// whatever happened.
void ProcessEdit(QString& sTemplateName);
// Shows TemplateItem on the task form; true if it came back fit to be saved as a template (saved,
// with a subject, asked for once if missing).
Bool16 ViewNewTemplate();

} // namespace steplets::modTasks
