#pragma once
// The one template being authored or processed: the meeting place of the template engine, the
// options dialog and task creation.
#include "platform/runtime/Date.h"
#include "platform/runtime/Int16.h"
#include <QString>
#include <memory>

namespace steplets {
namespace ol { class MAPIFolder; class TaskItem; }

struct EditedTemplateState {
    Int16 DateType;
    QString FillIn1, FillIn2, FillIn3, FillIn4;
    QString UserPrompt1, UserPrompt2, UserPrompt3, UserPrompt4;
    QString PromptForAssignee;
    QString AnchorDescription;
    Date ReferenceDate;
    Bool16 OptionsDialogDeclined;                     // survives ReSetModuleVariables
    std::shared_ptr<ol::MAPIFolder> TemplateFolder;
    std::shared_ptr<ol::TaskItem> TemplateItem;

    // FillIn1..FillIn4 by number, for the routines that walk the four fields.
    QString& FillIn(int n);
    QString& UserPrompt(int n);
};

namespace modTasks {

EditedTemplateState& EditedTemplate();
void ReSetModuleVariables();

} // namespace modTasks
} // namespace steplets
