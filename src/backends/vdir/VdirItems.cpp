#include "VdirItems.h"
#include "TaskCalendar.h"
#include "TaskProperties.h"
#include "VdirFiles.h"
#include "VdirStore.h"
#include <QDir>

namespace steplets::vdir {

namespace {

Failure deletedFailure(const QString& what)
{
    return vdirFailure(fail::NotFound, QStringLiteral("The %1 has been deleted.").arg(what));
}

// Pattern and user property objects keep their task alive, as the object model's references do.
const std::shared_ptr<VdirTaskItem>& alive(const std::shared_ptr<VdirTaskItem>& item) { return item; }

class VdirPattern : public ol::RecurrencePattern {
public:
    explicit VdirPattern(std::shared_ptr<VdirTaskItem> item) : m_item(std::move(item)) {}
    Value get(const QString& name) const override
    {
        const auto task = alive(m_item);
        if (!task->data().pattern)
            throw vdirFailure(fail::NotFound, QStringLiteral("The task is no longer recurring."));
        return patternGet(*task->data().pattern, name);
    }
    void set(const QString& name, const Value& value) override
    {
        const auto task = alive(m_item);
        PatternData next = task->data().pattern.value_or(freshPattern(task->data(), task->store().today()));
        patternSet(next, name, value);
        task->change().pattern = next;
    }

private:
    std::shared_ptr<VdirTaskItem> m_item;
};

class VdirLink : public ol::Link {
public:
    VdirLink(std::shared_ptr<VdirStore> store, LinkData data) : m_store(std::move(store)), m_data(std::move(data)) {}
    QString Name() const override { return m_data.name; }
    QString EntryID() const override { return m_data.entryId; }
    std::shared_ptr<ol::ContactItem> Item() const override
    {
        return ol::asContact(m_store->itemFor(m_store->load(m_data.entryId)));
    }

private:
    std::shared_ptr<VdirStore> m_store;
    LinkData m_data;
};

class VdirLinks : public ol::Links {
public:
    explicit VdirLinks(VdirTaskItem& item) : m_item(item) {}
    int Count() const override { return static_cast<int>(m_item.data().links.size()); }
    std::shared_ptr<ol::Link> Item(int index) const override
    {
        if (index < 1 || index > Count())
            throw Failure::subscript();
        return std::make_shared<VdirLink>(m_item.store().shared_from_this(), m_item.data().links[index - 1]);
    }
    std::shared_ptr<ol::Link> Add(const ol::ContactItem& contact) override
    {
        if (contact.EntryID().isEmpty())
            throw vdirFailure(fail::InvalidArgument, QStringLiteral("Only a saved contact can be linked to a task."));
        const auto* ours = dynamic_cast<const VdirContactItem*>(&contact);
        LinkData link{contact.EntryID(), ours && !ours->uid().isEmpty() ? ours->uid() : contact.EntryID(), contact.FileAs()};
        m_item.change().links << link;
        return Item(Count());
    }

private:
    VdirTaskItem& m_item;
};

Value defaultOf(int type)
{
    switch (type) {
    case ol::olText: return Value(QString());
    case ol::olDateTime: return Value(Date::noDate());
    case ol::olYesNo: return Value(false);
    case ol::olNumber: case ol::olCurrency: return Value(0.0);
    default: return Value(0);
    }
}

Value convertedTo(int type, const Value& v)
{
    switch (type) {
    case ol::olText: return Value(v.toText());
    case ol::olDateTime: return Value(checkedDate(v, QStringLiteral("Value")));
    case ol::olYesNo: return Value(v.toBool());
    case ol::olNumber: case ol::olCurrency: return Value(v.toDouble());
    default: return Value(static_cast<int>(v.toLong()));
    }
}

class VdirUserProperty : public ol::UserProperty {
public:
    VdirUserProperty(std::shared_ptr<VdirTaskItem> item, QString name) : m_item(std::move(item)), m_name(std::move(name)) {}
    QString Name() const override { return m_name; }
    int Type() const override { return find(*alive(m_item)).type; }
    steplets::Value get() const override { return find(*alive(m_item)).value; }
    void set(const steplets::Value& value) override
    {
        const auto task = alive(m_item);
        const int type = find(*task).type;
        const steplets::Value converted = convertedTo(type, value);
        for (UserPropertyData& u : task->change().userProperties)
            if (u.name == m_name)
                u.value = converted;
    }

private:
    const UserPropertyData& find(const VdirTaskItem& task) const
    {
        for (const UserPropertyData& u : task.data().userProperties)
            if (u.name == m_name)
                return u;
        throw vdirFailure(fail::NotFound, QStringLiteral("The user property \"%1\" no longer exists.").arg(m_name));
    }
    std::shared_ptr<VdirTaskItem> m_item;
    QString m_name;
};

class VdirUserProperties : public ol::UserProperties {
public:
    explicit VdirUserProperties(VdirTaskItem& item) : m_item(item) {}
    int Count() const override { return static_cast<int>(m_item.data().userProperties.size()); }
    std::shared_ptr<ol::UserProperty> Item(int index) const override
    {
        if (index < 1 || index > Count())
            throw Failure::subscript();
        return std::make_shared<VdirUserProperty>(m_item.shared_from_this(), m_item.data().userProperties[index - 1].name);
    }
    std::shared_ptr<ol::UserProperty> Find(const QString& name) const override
    {
        for (const UserPropertyData& u : m_item.data().userProperties)
            if (u.name.compare(name, Qt::CaseInsensitive) == 0)
                return std::make_shared<VdirUserProperty>(m_item.shared_from_this(), u.name);
        return nullptr;
    }
    std::shared_ptr<ol::UserProperty> Add(const QString& name, int type, bool addToFolderFields) override
    {
        static const QList<int> types = {ol::olText, ol::olNumber, ol::olDateTime, ol::olYesNo, ol::olDuration,
                                         ol::olPercent, ol::olCurrency, ol::olInteger};
        if (name.trimmed().isEmpty())
            throw vdirFailure(fail::InvalidArgument, QStringLiteral("A user property needs a name."));
        if (!types.contains(type))
            throw vdirFailure(fail::InvalidArgument, QStringLiteral("%1 is no user property type.").arg(type));
        if (Find(name))
            throw vdirFailure(fail::InvalidArgument, QStringLiteral("The task already has a user property \"%1\".").arg(name));
        m_item.change().userProperties << UserPropertyData{name, type, addToFolderFields, defaultOf(type)};
        return Find(name);
    }

private:
    VdirTaskItem& m_item;
};

} // namespace

// --- shared item state ---------------------------------------------------------------------------

ItemState::ItemState(std::shared_ptr<VdirStore> s, QString c, QString e, QByteArray r, bool sv)
    : store(std::move(s)), collection(std::move(c)), entryId(std::move(e)), raw(std::move(r)), saved(sv)
{
}

QString ItemState::path(const QString& extension) const
{
    return QDir(store->collectionPath(collection)).filePath(entryId + extension);
}

void ItemState::checkUsable(const QString& what) const
{
    if (deleted)
        throw deletedFailure(what);
}

bool ItemState::claimEntryId(QString& uid)
{
    const bool isNew = entryId.isEmpty();
    if (isNew) entryId = store->newEntryID();
    if (uid.isEmpty()) uid = entryId;
    return isNew;
}

void ItemState::write(const QString& extension, const QByteArray& bytes, bool isNew)
{
    store->write(path(extension), bytes, !isNew);
    raw = bytes;
    saved = true;
}

void ItemState::erase(const QString& what, const QString& extension)
{
    checkUsable(what);
    if (!entryId.isEmpty()) {
        removeFile(path(extension));
        store->forget(path(extension));
    }
    deleted = true;
    saved = false;
}

// --- tasks ---------------------------------------------------------------------------------------

VdirTaskItem::VdirTaskItem(std::shared_ptr<VdirStore> store, QString collection, QString entryId, QByteArray raw,
                           TaskData data, bool saved)
    : m_state(std::move(store), std::move(collection), std::move(entryId), std::move(raw), saved),
      m_data(std::move(data)), m_links(std::make_unique<VdirLinks>(*this)),
      m_userProperties(std::make_unique<VdirUserProperties>(*this))
{
}

void VdirTaskItem::refreshIfChanged() const
{
    if (!m_state.saved || m_state.deleted || m_state.entryId.isEmpty())
        return;
    try {
        LoadedItem now = m_state.store->load(m_state.entryId);
        if (now.raw != m_state.raw && std::holds_alternative<TaskData>(now.content)) {
            m_data = std::get<TaskData>(now.content);
            m_state.raw = now.raw;
        }
    } catch (const Failure&) {
        // Gone or spoilt on disk: the item keeps what it last read.
    }
}

const TaskData& VdirTaskItem::data() const
{
    refreshIfChanged();
    return m_data;
}

TaskData& VdirTaskItem::change()
{
    m_state.checkUsable(QStringLiteral("task"));
    refreshIfChanged();
    m_state.saved = false;
    return m_data;
}

Value VdirTaskItem::get(const QString& name) const
{
    if (name.compare(QLatin1String("EntryID"), Qt::CaseInsensitive) == 0)
        return Value(m_state.entryId);
    if (name.compare(QLatin1String("Saved"), Qt::CaseInsensitive) == 0)
        return Value(m_state.saved);
    if (name.compare(QLatin1String("Body"), Qt::CaseInsensitive) == 0)
        throw vdirFailure(fail::NoSuchProperty, QStringLiteral("The task's Body is reached only through SafeTaskItem."));
    return taskGet(data(), name);
}

void VdirTaskItem::set(const QString& name, const Value& value)
{
    if (name.compare(QLatin1String("Body"), Qt::CaseInsensitive) == 0)
        throw vdirFailure(fail::NoSuchProperty, QStringLiteral("The task's Body is reached only through SafeTaskItem."));
    if (name.compare(QLatin1String("EntryID"), Qt::CaseInsensitive) == 0 || name.compare(QLatin1String("Saved"), Qt::CaseInsensitive) == 0)
        throw vdirFailure(fail::InvalidArgument, QStringLiteral("The property \"%1\" is read-only.").arg(name));
    m_state.checkUsable(QStringLiteral("task"));
    TaskData next = data();
    taskSet(next, name, value, m_state.store->today());
    change() = next;
}

QString VdirTaskItem::safeBody() const { return data().Body; }

void VdirTaskItem::setSafeBody(const QString& body) { change().Body = body; }

void VdirTaskItem::Save()
{
    m_state.checkUsable(QStringLiteral("task"));
    const bool isNew = m_state.claimEntryId(m_data.uid);
    // The file keeps what other clients put into it.
    m_state.write(QStringLiteral(".ics"), writeTaskCalendar(m_data, m_state.raw), isNew);
}

void VdirTaskItem::Delete() { m_state.erase(QStringLiteral("task"), QStringLiteral(".ics")); }

void VdirTaskItem::Display(bool modal)
{
    m_state.checkUsable(QStringLiteral("task"));
    if (!m_state.store->display())
        throw vdirFailure(fail::InvalidArgument, QStringLiteral("There is no window in which to display the task."));
    if (modal) m_state.store->display()->displayTask(*this, true);
    else m_state.store->display()->displayTaskModeless(*this, shared_from_this());
}

std::shared_ptr<ol::RecurrencePattern> VdirTaskItem::GetRecurrencePattern()
{
    m_state.checkUsable(QStringLiteral("task"));
    if (!data().pattern)
        change().pattern = freshPattern(m_data, m_state.store->today());
    // The same pattern object for as long as anyone holds it; it holds the task, not the reverse.
    std::shared_ptr<ol::RecurrencePattern> pattern = m_pattern.lock();
    if (!pattern) {
        pattern = std::make_shared<VdirPattern>(shared_from_this());
        m_pattern = pattern;
    }
    return pattern;
}

void VdirTaskItem::ClearRecurrencePattern()
{
    if (data().pattern)
        change().pattern.reset();
}

ol::Links& VdirTaskItem::Links() { return *m_links; }

ol::UserProperties& VdirTaskItem::UserProperties() { return *m_userProperties; }

void VdirTaskItem::Assign() { change().assigned = true; }

// --- contacts ------------------------------------------------------------------------------------

VdirContactItem::VdirContactItem(std::shared_ptr<VdirStore> store, QString collection, QString entryId, QByteArray raw,
                                 ContactData data)
    : m_state(std::move(store), std::move(collection), std::move(entryId), std::move(raw), true), m_data(std::move(data))
{
}

Value VdirContactItem::get(const QString& name) const
{
    if (name.compare(QLatin1String("EntryID"), Qt::CaseInsensitive) == 0)
        return Value(m_state.entryId);
    if (name.compare(QLatin1String("Saved"), Qt::CaseInsensitive) == 0)
        return Value(m_state.saved);
    const QString canonical = canonicalContactProperty(name);
    if (canonical.isEmpty())
        throw vdirFailure(fail::NoSuchProperty, QStringLiteral("The contact has no property \"%1\".").arg(name));
    return contactValue(m_data, canonical);
}

void VdirContactItem::set(const QString& name, const Value& value)
{
    m_state.checkUsable(QStringLiteral("contact"));
    const QString canonical = canonicalContactProperty(name);
    if (canonical.isEmpty())
        throw vdirFailure(fail::NoSuchProperty, QStringLiteral("The contact has no property \"%1\".").arg(name));
    if (isComputedContactProperty(canonical))
        throw vdirFailure(fail::InvalidArgument, QStringLiteral("The property \"%1\" is read-only.").arg(canonical));
    Value converted;
    switch (contactPropertyType(canonical)) {
    case ContactType::Date: converted = value.isNull() ? Value() : Value(checkedDate(value, canonical)); break;
    case ContactType::Number: converted = Value(checkedNumber(value, canonical, 0, 2)); break;
    case ContactType::Text: converted = Value(value.toText()); break;
    }
    setContactValue(m_data, canonical, converted);
    m_state.saved = false;
}

void VdirContactItem::Save()
{
    m_state.checkUsable(QStringLiteral("contact"));
    const bool isNew = m_state.claimEntryId(m_data.uid);
    m_state.write(QStringLiteral(".vcf"), writeContactCard(m_data), isNew);
}

void VdirContactItem::Delete() { m_state.erase(QStringLiteral("contact"), QStringLiteral(".vcf")); }

void VdirContactItem::Display(bool modal)
{
    m_state.checkUsable(QStringLiteral("contact"));
    if (!m_state.store->display())
        throw vdirFailure(fail::InvalidArgument, QStringLiteral("There is no window in which to display the contact."));
    m_state.store->display()->displayContact(*this, modal);
}

} // namespace steplets::vdir
