#include "VdirStore.h"
#include "TaskCalendar.h"
#include "VdirFiles.h"
#include "VdirItems.h"
#include "platform/PrivateFiles.h"
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QUuid>
#include <sys/stat.h>

namespace steplets::vdir {

namespace {

const QString kTask = QStringLiteral(".ics");
const QString kContact = QStringLiteral(".vcf");

struct FileStamp {
    qint64 mtimeNs = 0;
    qint64 size = -1;
};

std::optional<FileStamp> stampOf(const QString& path)
{
    struct stat st;
    if (::stat(QFile::encodeName(path).constData(), &st) != 0 || !S_ISREG(st.st_mode))
        return std::nullopt;
    return FileStamp{static_cast<qint64>(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec, st.st_size};
}

class VdirItemsOf : public ol::Items {
public:
    VdirItemsOf(std::shared_ptr<VdirStore> store, QString folder) : m_store(std::move(store)), m_folder(std::move(folder)) {}
    int Count() const override { return static_cast<int>(m_store->list(m_folder).size()); }
    std::shared_ptr<ol::Item> Item(int index) const override
    {
        const QStringList ids = m_store->list(m_folder);
        if (index < 1 || index > ids.size())
            throw Failure::subscript();
        return m_store->itemFor(m_store->load(ids[index - 1]));
    }
    std::shared_ptr<ol::TaskItem> Add() override { return m_store->newTask(m_folder); }

private:
    std::shared_ptr<VdirStore> m_store;
    QString m_folder;
};

class VdirFolder : public ol::MAPIFolder {
public:
    VdirFolder(std::shared_ptr<VdirStore> store, QString entryId)
        : m_store(store), m_entryId(entryId), m_items(store, entryId) {}
    QString EntryID() const override { return m_entryId; }
    QString StoreID() const override { return m_store->config().storeId; }
    ol::Items& Items() override { return m_items; }

private:
    std::shared_ptr<VdirStore> m_store;
    QString m_entryId;
    VdirItemsOf m_items;
};

class VdirNameSpace : public ol::NameSpace {
public:
    explicit VdirNameSpace(std::shared_ptr<VdirStore> store) : m_store(std::move(store)) {}
    std::shared_ptr<ol::Item> GetItemFromID(const QString& entryID, const QString& storeID) override
    {
        m_store->checkStoreID(storeID);
        return m_store->itemFor(m_store->load(entryID));
    }
    std::shared_ptr<ol::MAPIFolder> GetFolderFromID(const QString& entryID, const QString& storeID) override
    {
        m_store->checkStoreID(storeID);
        if (!m_store->hasCollection(entryID))
            throw vdirFailure(fail::NotFound, QStringLiteral("The folder \"%1\" was not found in the store \"%2\".")
                                                  .arg(entryID, m_store->config().storeId));
        // What writers that were killed between write and rename left behind goes now.
        files::sweepTemporaries(m_store->collectionPath(entryID));
        return std::make_shared<VdirFolder>(m_store, entryID);
    }

private:
    std::shared_ptr<VdirStore> m_store;
};

class VdirApplication : public ol::Application {
public:
    explicit VdirApplication(std::shared_ptr<VdirStore> store) : m_store(std::move(store)) {}
    QString Version() const override { return m_store->config().version; }
    std::shared_ptr<ol::NameSpace> GetNamespace(const QString& type) override
    {
        if (type.compare(QLatin1String("MAPI"), Qt::CaseInsensitive) != 0)
            throw Failure::invalidCall(QStringLiteral("Only the MAPI namespace is known."));
        if (!m_ns)
            m_ns = std::make_shared<VdirNameSpace>(m_store);
        return m_ns;
    }

private:
    std::shared_ptr<VdirStore> m_store;
    std::shared_ptr<ol::NameSpace> m_ns;
};

// A name is usable as an EntryID or collection name only if it stays inside its directory.
bool isPlainName(const QString& name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && name != QLatin1String(".")
           && name != QLatin1String("..") && !name.startsWith(QLatin1Char('.'));
}

} // namespace

VdirStore::VdirStore(VdirConfig config, std::shared_ptr<ol::ItemDisplay> display)
    : m_config(std::move(config)), m_display(std::move(display))
{
}

Date VdirStore::today() const
{
    return m_config.clock ? m_config.clock() : Date::fromQDateTime(QDateTime::currentDateTime());
}

QString VdirStore::collectionPath(const QString& folderEntryID) const
{
    return QDir(m_config.root).filePath(folderEntryID);
}

bool VdirStore::hasCollection(const QString& folderEntryID) const
{
    return isPlainName(folderEntryID) && QFileInfo(collectionPath(folderEntryID)).isDir();
}

void VdirStore::ensureCollection(const QString& folderEntryID) const
{
    if (!isPlainName(folderEntryID) || !files::makePrivatePath(collectionPath(folderEntryID)))
        throw vdirFailure(fail::FileAccess, QStringLiteral("Cannot create the folder \"%1\" in \"%2\".")
                                                .arg(folderEntryID, m_config.root));
}

void VdirStore::checkStoreID(const QString& storeID) const
{
    if (storeID != m_config.storeId)
        throw vdirFailure(fail::NotFound, QStringLiteral("The store \"%1\" is not open; the open store is \"%2\".")
                                              .arg(storeID, m_config.storeId));
}

QString VdirStore::findFile(const QString& entryID) const
{
    if (!isPlainName(entryID))
        return {};
    const QStringList collections = QDir(m_config.root).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& c : collections) {
        for (const QString& ext : {kTask, kContact}) {
            const QString path = QDir(collectionPath(c)).filePath(entryID + ext);
            if (stampOf(path))
                return path;
        }
    }
    return {};
}

const VdirStore::Cached& VdirStore::cached(const QString& path, const QString& collection, const QString& entryId)
{
    const std::optional<FileStamp> stamp = stampOf(path);
    Cached& entry = m_cache[path];
    if (stamp && entry.mtimeNs == stamp->mtimeNs && entry.size == stamp->size)
        return entry;
    // Changed on disk, or never read: read afresh.
    entry = Cached{};
    entry.mtimeNs = stamp ? stamp->mtimeNs : 0;
    entry.size = stamp ? stamp->size : -1;
    QByteArray raw;
    try {
        raw = readWholeFile(path);
    } catch (const Failure& f) {
        entry.error = f.description();
        return entry;
    }
    QString why;
    LoadedItem item{path, collection, entryId, raw, TaskData{}};
    if (path.endsWith(kTask)) {
        if (auto task = readTaskCalendar(raw, &why))
            item.content = std::move(*task);
    } else if (auto contact = readContactCard(raw, &why)) {
        item.content = std::move(*contact);
    }
    if (why.isEmpty())
        entry.item = std::move(item);
    else
        entry.error = QStringLiteral("The file \"%1\" holds no valid %2: %3.")
                          .arg(path, path.endsWith(kTask) ? QStringLiteral("task") : QStringLiteral("contact"), why);
    return entry;
}

LoadedItem VdirStore::load(const QString& entryID)
{
    const QString path = findFile(entryID);
    if (path.isEmpty())
        throw vdirFailure(fail::NotFound, QStringLiteral("The item \"%1\" was not found in the store \"%2\"; it may have been deleted.")
                                              .arg(entryID, m_config.storeId));
    const QString collection = QFileInfo(QFileInfo(path).absolutePath()).fileName();
    const Cached& entry = cached(path, collection, entryID);
    if (!entry.item)
        throw vdirFailure(fail::BadFile, entry.error);
    return *entry.item;
}

QStringList VdirStore::list(const QString& folderEntryID)
{
    QStringList ids;
    const QDir dir(collectionPath(folderEntryID));
    const QStringList files = dir.entryList({QStringLiteral("*.ics"), QStringLiteral("*.vcf")}, QDir::Files, QDir::Name);
    for (const QString& f : files) {
        const QString id = f.chopped(4);
        if (isPlainName(id) && cached(dir.filePath(f), folderEntryID, id).item)
            ids << id;
    }
    return ids;
}

std::shared_ptr<ol::Item> VdirStore::itemFor(LoadedItem loaded)
{
    if (auto* task = std::get_if<TaskData>(&loaded.content))
        return std::make_shared<VdirTaskItem>(shared_from_this(), loaded.collection, loaded.entryId, loaded.raw,
                                              std::move(*task), true);
    return std::make_shared<VdirContactItem>(shared_from_this(), loaded.collection, loaded.entryId, loaded.raw,
                                             std::get<ContactData>(std::move(loaded.content)));
}

std::shared_ptr<ol::TaskItem> VdirStore::newTask(const QString& folderEntryID)
{
    if (!hasCollection(folderEntryID))
        throw vdirFailure(fail::NotFound, QStringLiteral("The folder \"%1\" no longer exists.").arg(folderEntryID));
    return std::make_shared<VdirTaskItem>(shared_from_this(), folderEntryID, QString(), QByteArray(), TaskData{}, false);
}

void VdirStore::write(const QString& path, const QByteArray& bytes, bool replace)
{
    writeFileAtomically(path, bytes, replace);
    m_cache.remove(path);
}

void VdirStore::forget(const QString& path) { m_cache.remove(path); }

QString VdirStore::newEntryID() const
{
    return m_config.entryIds ? m_config.entryIds() : QUuid::createUuid().toString(QUuid::WithoutBraces);
}

std::shared_ptr<ol::Application> openVdirStore(VdirConfig config, std::shared_ptr<ol::ItemDisplay> display)
{
    return std::make_shared<VdirApplication>(std::make_shared<VdirStore>(std::move(config), std::move(display)));
}

} // namespace steplets::vdir
