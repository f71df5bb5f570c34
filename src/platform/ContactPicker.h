#pragma once
// The modal contact chooser of the support library, in two versions of one interface: the older
// for a mail client of version 9 and below, the newer for 10 and above. Both take the same twenty
// arguments in the same order, offer the active contacts of the passed link connection through
// the UiHost, and leave the chosen contact's number (0 for none), name and EntryID in their
// result properties. The older offers names only; the newer adds company and e-mail from the card.
#include "UiHost.h"
#include "runtime/Int16.h"
#include <QString>
#include <memory>

namespace steplets {

class Connection;
class StoreGateway;
namespace ol { class NameSpace; }

class ContactPicker {
public:
    enum class Version { Older, Newer };

    virtual ~ContactPicker() = default;
    virtual Version version() const = 0;

    // The numbers iOption and iFlags, the filter and the six reserved texts are taken and unused.
    void ShowPicker(std::shared_ptr<Connection>& cnLink, qint32& lTimeCardID, QString& sProvider, qint32& iOption,
                    QString& sContactFolderEID, QString& sContactFolderSID, QString& sFilter,
                    Bool16& bManageContacts, qint32& iFlags, QString& sReserved1, QString& sReserved2,
                    QString& sReserved3, QString& sReserved4, QString& sReserved5, QString& sReserved6,
                    qint32& lTop, qint32& lLeft, qint32& lWidth, qint32& lHeight, void* oParent);

    qint32 ContactID() const { return m_contactID; }
    const QString& ContactName() const { return m_name; }
    const QString& ContactEntryID() const { return m_entryID; }

protected:
    ContactPicker(UiHost& host, StoreGateway& store, std::shared_ptr<ol::NameSpace> ns);
    // What this version shows of a row whose card was found.
    virtual void describe(ContactPickerRow& row, const ol::Item& card) const = 0;

private:
    QList<ContactPickerRow> offeredRows(const std::shared_ptr<Connection>& cnLink, const QString& storeID) const;

    UiHost& m_host;
    StoreGateway& m_store;
    std::shared_ptr<ol::NameSpace> m_ns;
    qint32 m_contactID = 0;
    QString m_name;
    QString m_entryID;
};

// The version a mail client of that version takes: 9 and below (0 too, an unknown one) the older.
// The namespace resolves the offered rows' cards; without one no row has its card.
std::unique_ptr<ContactPicker> createContactPicker(int iOutlookVersion, UiHost& host, StoreGateway& store,
                                                   std::shared_ptr<ol::NameSpace> ns);

// The name under which a picker's version travels with its request: "older" or "newer".
QString pickerVersionName(ContactPicker::Version v);

} // namespace steplets
