#pragma once
// The windows a task or contact item is displayed in on the Qt host. Both are modal and return
// once the user has closed them. The task window edits the item and saves it through the item's
// own Save; the contact window only shows the card.
#include "OutlookGateway.h"

class QWidget;

namespace steplets::qt {

// Modal; returns when the user has closed the window, saved or not.
void showTaskWindow(QWidget* parent, ol::TaskItem& item);
// Modal, read only.
void showContactWindow(QWidget* parent, ol::ContactItem& item);

} // namespace steplets::qt
