#pragma once
// The contact picker on the Qt host: a modal list of the offered contacts with a search box,
// placed over the caller's window.
#include "UiHost.h"

class QWidget;

namespace steplets::qt {

// Modal. Cancelling gives contact 0 with an empty name and EntryID. `display` shows a contact
// when the request allows managing contacts and the user asks to open one.
ContactPickerResult runContactPickerDialog(QWidget* parent, const ContactPickerRequest& request,
                                           ol::ItemDisplay& display);

} // namespace steplets::qt
