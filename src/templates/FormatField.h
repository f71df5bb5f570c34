#pragma once
// The subject of a task, composed from the four fill-ins of the edited template: time-card
// values, the date and time, properties of the linked contact, the user's answer and the
// template's own subject, each followed by ": ", the last one cut.
#include "DateRules.h"
#include <QString>
#include <memory>

namespace steplets::ol {
class ContactItem;
}

namespace steplets::modTasks {

// The separator after every field that yields something.
QString FieldSeparator();

// Reads FillIn1..FillIn4 of EditedTemplate, the session's time-card values and sPromptResult.
// With a contact and without one the rules differ in several small ways. After a failure the
// result comes back as far as it was built, without the final trimming.
QString FormatField(const QString& sTemplateSubject, const std::shared_ptr<ol::ContactItem>& olContact,
                    const Clock& now = uiClock());

} // namespace steplets::modTasks
