#pragma once
// The task store on a vdir: a root directory with one collection (sub-directory) per folder,
// named by the folder's EntryID; one item per file, <EntryID>.ics (one VTODO) or <EntryID>.vcf
// (one VCARD). The StoreID is the root's identity, given by configuration.
#include "ContactCard.h"
#include "TaskData.h"
#include "platform/OutlookGateway.h"
#include <QByteArray>
#include <QHash>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace steplets::vdir {

struct VdirConfig {
    QString root;
    QString storeId = QStringLiteral("store");
    QString version = QStringLiteral("11.0");
    // The present moment, for what the object model dates "today"; the system clock if unset.
    std::function<Date()> clock;
    // The EntryID an item gets on its first Save; a random UUID if unset. A scenario player
    // hands out names in order, so that created items can be listed in the order of creation.
    std::function<QString()> entryIds;
};

// What one file holds, as last read.
struct LoadedItem {
    QString path;
    QString collection;
    QString entryId;
    QByteArray raw;
    std::variant<TaskData, ContactData> content;
};

class VdirStore : public std::enable_shared_from_this<VdirStore> {
public:
    VdirStore(VdirConfig config, std::shared_ptr<ol::ItemDisplay> display);

    const VdirConfig& config() const { return m_config; }
    ol::ItemDisplay* display() const { return m_display.get(); }
    Date today() const;

    // Creates the collection if missing (for the admin tool and tests).
    void ensureCollection(const QString& folderEntryID) const;
    QString collectionPath(const QString& folderEntryID) const;
    bool hasCollection(const QString& folderEntryID) const;
    void checkStoreID(const QString& storeID) const;

    // The item's file in any collection, read afresh if it changed on disk since the last read.
    // Unknown, deleted or unreadable: a failure naming the EntryID or the file.
    LoadedItem load(const QString& entryID);
    // EntryIDs of the readable items of a collection, in order; bad files are passed over.
    QStringList list(const QString& folderEntryID);

    std::shared_ptr<ol::Item> itemFor(LoadedItem loaded);
    std::shared_ptr<ol::TaskItem> newTask(const QString& folderEntryID);

    // Writes a file and remembers what was written, so that our own write is no change. Without
    // `replace` an existing file is a failure and stays as it is.
    void write(const QString& path, const QByteArray& bytes, bool replace = true);
    void forget(const QString& path);
    QString newEntryID() const;

private:
    struct Cached {
        qint64 mtimeNs = 0;
        qint64 size = -1;
        std::optional<LoadedItem> item;
        QString error;
    };
    // Parses the file, using the cache while modification time and size are unchanged.
    const Cached& cached(const QString& path, const QString& collection, const QString& entryId);
    QString findFile(const QString& entryID) const;

    VdirConfig m_config;
    std::shared_ptr<ol::ItemDisplay> m_display;
    QHash<QString, Cached> m_cache;
};

// The application object of a vdir store: what the composition root hands the component.
std::shared_ptr<ol::Application> openVdirStore(VdirConfig config, std::shared_ptr<ol::ItemDisplay> display);

} // namespace steplets::vdir
