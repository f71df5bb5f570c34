#include "ItemWindows.h"
#include "ContactWindow.h"
#include "TaskWindow.h"

namespace steplets::qt {

void showTaskWindow(QWidget* parent, ol::TaskItem& item)
{
    TaskWindow window(item, parent);
    window.exec();
}

void showContactWindow(QWidget* parent, ol::ContactItem& item)
{
    ContactWindow window(item, parent);
    window.exec();
}

} // namespace steplets::qt
