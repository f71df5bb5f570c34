#include "ContactPicker.h"
#include "StoreGateway.h"
#include "runtime/Failure.h"

namespace steplets {

namespace {
class OlderContactPicker : public ContactPicker {
public:
    OlderContactPicker(UiHost& host, StoreGateway& store, std::shared_ptr<ol::NameSpace> ns)
        : ContactPicker(host, store, std::move(ns)) {}
    Version version() const override { return Version::Older; }

protected:
    void describe(ContactPickerRow&, const ol::Item&) const override {}
};

class NewerContactPicker : public ContactPicker {
public:
    NewerContactPicker(UiHost& host, StoreGateway& store, std::shared_ptr<ol::NameSpace> ns)
        : ContactPicker(host, store, std::move(ns)) {}
    Version version() const override { return Version::Newer; }

protected:
    void describe(ContactPickerRow& row, const ol::Item& card) const override
    {
        row.company = card.get(QStringLiteral("CompanyName")).textOrEmpty();
        row.email = card.get(QStringLiteral("Email1Address")).textOrEmpty();
    }
};

// A card that cannot be read is a card that is gone: the row is still offered by name.
std::shared_ptr<ol::Item> cardOf(ol::NameSpace* ns, const QString& entryID, const QString& storeID)
{
    if (!ns || entryID.isEmpty()) return nullptr;
    try {
        auto item = ns->GetItemFromID(entryID, storeID);
        return item && item->kind() == ol::Item::Kind::Contact ? item : nullptr;
    } catch (const Failure&) {
        return nullptr;
    }
}
} // namespace

ContactPicker::ContactPicker(UiHost& host, StoreGateway& store, std::shared_ptr<ol::NameSpace> ns)
    : m_host(host), m_store(store), m_ns(std::move(ns))
{
}

QList<ContactPickerRow> ContactPicker::offeredRows(const std::shared_ptr<Connection>& cnLink,
                                                   const QString& storeID) const
{
    QList<ContactPickerRow> rows;
    auto rs = m_store.CreateRecordset();
    rs->Open(QStringLiteral("SELECT ContactID, ContactName, ContactEntryID FROM tblContacts WHERE Active=True"), cnLink,
             ado::adOpenStatic, ado::adLockReadOnly);
    if (rs->BOF() && rs->EOF_()) return rows;
    for (rs->MoveFirst(); !rs->EOF_(); rs->MoveNext()) {
        ContactPickerRow row;
        row.contactID = rs->Fields(0).value().longOrZero();
        row.name = rs->Fields(1).value().textOrEmpty();
        row.entryID = rs->Fields(2).value().textOrEmpty();
        if (auto card = cardOf(m_ns.get(), row.entryID, storeID)) {
            row.hasCard = true;
            try {
                describe(row, *card);
            } catch (const Failure&) {
                // A card without these properties still offers its name.
            }
        }
        rows.append(row);
    }
    return rows;
}

void ContactPicker::ShowPicker(std::shared_ptr<Connection>& cnLink, qint32& lTimeCardID, QString& sProvider,
                               qint32& iOption, QString& sContactFolderEID, QString& sContactFolderSID,
                               QString& sFilter, Bool16& bManageContacts, qint32& iFlags, QString& sReserved1,
                               QString& sReserved2, QString& sReserved3, QString& sReserved4, QString& sReserved5,
                               QString& sReserved6, qint32& lTop, qint32& lLeft, qint32& lWidth, qint32& lHeight,
                               void* oParent)
{
    ContactPickerRequest request;
    auto& a = request.arguments;
    // The connection travels as whether there is an open one: the rows below are read from it.
    a.append({QStringLiteral("cnLink"), Value(static_cast<bool>(cnLink) && cnLink->State() == ado::adStateOpen)});
    a.append({QStringLiteral("lTimeCardID"), Value(lTimeCardID)});
    a.append({QStringLiteral("sProvider"), Value(sProvider)});
    a.append({QStringLiteral("iOption"), Value(iOption)});
    a.append({QStringLiteral("sContactFolderEID"), Value(sContactFolderEID)});
    a.append({QStringLiteral("sContactFolderSID"), Value(sContactFolderSID)});
    a.append({QStringLiteral("sFilter"), Value(sFilter)});
    a.append({QStringLiteral("bManageContacts"), Value(bManageContacts)});
    a.append({QStringLiteral("iFlags"), Value(iFlags)});
    const QString* reserved[] = {&sReserved1, &sReserved2, &sReserved3, &sReserved4, &sReserved5, &sReserved6};
    for (int i = 0; i < 6; ++i) a.append({QStringLiteral("sReserved%1").arg(i + 1), Value(*reserved[i])});
    a.append({QStringLiteral("lTop"), Value(lTop)});
    a.append({QStringLiteral("lLeft"), Value(lLeft)});
    a.append({QStringLiteral("lWidth"), Value(lWidth)});
    a.append({QStringLiteral("lHeight"), Value(lHeight)});
    a.append({QStringLiteral("oParent"), oParent ? Value(true) : Value()});
    request.version = pickerVersionName(version());
    request.rows = offeredRows(cnLink, sContactFolderSID);
    request.manageContacts = static_cast<bool>(bManageContacts);
    request.nameSpace = m_ns;
    request.contactStoreID = sContactFolderSID;
    request.top = lTop;
    request.left = lLeft;
    request.width = lWidth;
    request.height = lHeight;

    const ContactPickerResult result = m_host.pickContact(request);
    m_contactID = result.contactID;
    m_name = result.contactID != 0 ? result.name : QString();
    m_entryID = result.contactID != 0 ? result.entryID : QString();
}

std::unique_ptr<ContactPicker> createContactPicker(int iOutlookVersion, UiHost& host, StoreGateway& store,
                                                   std::shared_ptr<ol::NameSpace> ns)
{
    if (iOutlookVersion <= 9) return std::make_unique<OlderContactPicker>(host, store, std::move(ns));
    return std::make_unique<NewerContactPicker>(host, store, std::move(ns));
}

QString pickerVersionName(ContactPicker::Version v)
{
    return v == ContactPicker::Version::Older ? QStringLiteral("older") : QStringLiteral("newer");
}

} // namespace steplets
