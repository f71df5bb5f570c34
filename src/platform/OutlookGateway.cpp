#include "OutlookGateway.h"

namespace steplets::ol {

std::shared_ptr<TaskItem> asTask(const std::shared_ptr<Item>& item)
{
    auto task = std::dynamic_pointer_cast<TaskItem>(item);
    if (!task)
        throw Failure::typeMismatch();
    return task;
}

std::shared_ptr<ContactItem> asContact(const std::shared_ptr<Item>& item)
{
    auto contact = std::dynamic_pointer_cast<ContactItem>(item);
    if (!contact)
        throw Failure::typeMismatch();
    return contact;
}

} // namespace steplets::ol
