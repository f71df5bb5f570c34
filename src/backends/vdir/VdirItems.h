#pragma once
// Task and contact items of the vdir store, with their pattern, links and user properties.
#include "ContactCard.h"
#include "TaskData.h"
#include "platform/OutlookGateway.h"
#include <memory>

namespace steplets::vdir {

class VdirStore;
class VdirTaskItem;

// What task and contact items share: file, EntryID, Saved, deleted, fresh reading.
class ItemState {
public:
    ItemState(std::shared_ptr<VdirStore> store, QString collection, QString entryId, QByteArray raw, bool saved);
    std::shared_ptr<VdirStore> store;
    QString collection;
    QString entryId;
    QByteArray raw;               // the file as last read or written
    bool saved;
    bool deleted = false;

    QString path(const QString& extension) const;
    void checkUsable(const QString& what) const;      // a deleted item refuses changes
    // A new item gets its EntryID, which is also its UID where it has none; true when new.
    bool claimEntryId(QString& uid);
    // Writes the item's file; a new item never takes the place of a file that is there.
    void write(const QString& extension, const QByteArray& bytes, bool isNew);
    // Removes the item's file, if it was ever saved; the item refuses changes from then on.
    void erase(const QString& what, const QString& extension);
};

class VdirTaskItem : public ol::TaskItem, public std::enable_shared_from_this<VdirTaskItem> {
public:
    VdirTaskItem(std::shared_ptr<VdirStore> store, QString collection, QString entryId, QByteArray raw,
                 TaskData data, bool saved);

    Value get(const QString& name) const override;
    void set(const QString& name, const Value& value) override;
    QString EntryID() const override { return m_state.entryId; }
    bool Saved() const override { return m_state.saved; }
    void Save() override;
    void Delete() override;
    void Display(bool modal) override;

    std::shared_ptr<ol::RecurrencePattern> GetRecurrencePattern() override;
    void ClearRecurrencePattern() override;
    ol::Links& Links() override;
    ol::UserProperties& UserProperties() override;
    void Assign() override;

    // For the pattern, links and user properties: the data, and changing it.
    const TaskData& data() const;
    TaskData& change();
    VdirStore& store() const { return *m_state.store; }

protected:
    QString safeBody() const override;
    void setSafeBody(const QString& body) override;

private:
    void refreshIfChanged() const;

    mutable ItemState m_state;
    mutable TaskData m_data;
    std::weak_ptr<ol::RecurrencePattern> m_pattern;
    std::unique_ptr<ol::Links> m_links;
    std::unique_ptr<ol::UserProperties> m_userProperties;
};

class VdirContactItem : public ol::ContactItem {
public:
    VdirContactItem(std::shared_ptr<VdirStore> store, QString collection, QString entryId, QByteArray raw,
                    ContactData data);

    Value get(const QString& name) const override;
    void set(const QString& name, const Value& value) override;
    QString EntryID() const override { return m_state.entryId; }
    bool Saved() const override { return m_state.saved; }
    void Save() override;
    void Delete() override;
    void Display(bool modal) override;

    QString uid() const { return m_data.uid; }

private:
    ItemState m_state;
    ContactData m_data;
};

} // namespace steplets::vdir
