#pragma once
// The one way to a task's message text. Created for each save; handed the task as Item, then
// Body is read or written through it.
#include "OutlookGateway.h"
#include "runtime/Failure.h"
#include <memory>

namespace steplets {

class SafeTaskItem {
public:
    void setItem(std::shared_ptr<ol::TaskItem> item) { m_item = std::move(item); }
    // For a window that only borrows the task while the user edits it.
    static SafeTaskItem borrowing(ol::TaskItem& item)
    {
        SafeTaskItem safe;
        safe.setItem(std::shared_ptr<ol::TaskItem>(&item, [](ol::TaskItem*) {}));
        return safe;
    }
    QString Body() const { return task().safeBody(); }
    void setBody(const QString& body) { task().setSafeBody(body); }

private:
    // Using the object before it has an Item is what an unset object reference would be.
    ol::TaskItem& task() const
    {
        if (!m_item)
            throw Failure(91, QStringLiteral("Object variable or With block variable not set"));
        return *m_item;
    }
    std::shared_ptr<ol::TaskItem> m_item;
};

} // namespace steplets
