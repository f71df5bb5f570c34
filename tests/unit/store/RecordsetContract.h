#pragma once
// The store port's contract, written once: a backend joins by instantiating RecordsetContract
// with a StoreBackend that makes empty databases in a directory and a gateway over them.
#include "Failures.h"
#include "TempDir.h"
#include "platform/StoreGateway.h"
#include <gtest/gtest.h>
#include <functional>

namespace steplets::test {

struct StoreBackend {
    const char* name;
    // Creates both databases, empty, in the directory and gives the gateway that opens them.
    std::function<std::unique_ptr<StoreGateway>(const QString& dir)> create;
};

class RecordsetContract : public ::testing::TestWithParam<StoreBackend> {
protected:
    void SetUp() override
    {
        store = GetParam().create(dir.path());
        local = store->CreateConnection();
        local->Open(storeFiles::localConnectionString(dir.path()));
        link = store->CreateConnection();
        link->Open(storeFiles::linkConnectionString(dir.path()));
    }

    std::shared_ptr<Recordset> open(const QString& query, const std::shared_ptr<Connection>& cn,
                                    int cursor = ado::adOpenKeyset, int lock = ado::adLockOptimistic)
    {
        auto rs = store->CreateRecordset();
        rs->Open(query, cn, cursor, lock, ado::adCmdText);
        return rs;
    }
    std::shared_ptr<Recordset> templates() { return open(QStringLiteral("SELECT * FROM tblSteplets"), local); }

    // Adds templates with the given subjects through a recordset of their own; returns their IDs.
    std::vector<int> addTemplates(const QStringList& subjects)
    {
        auto rs = templates();
        std::vector<int> ids;
        for (const QString& s : subjects) {
            addRow(*rs, {{36, Value(s)}});
            ids.push_back(rs->Fields(0).value().toLong());
        }
        return ids;
    }

    // One new row through AddNew and Update, its values by column position.
    static void addRow(Recordset& rs, const std::vector<std::pair<int, Value>>& values)
    {
        rs.AddNew();
        for (const auto& [pos, v] : values) rs.Fields(pos).setValue(v);
        rs.Update();
    }
    void addAssignments(std::initializer_list<std::pair<int, int>> rows)
    {
        auto rs = open(QStringLiteral("SELECT * FROM tblGroupAssignments"), local);
        for (const auto& [g, t] : rows) addRow(*rs, {{0, Value(g)}, {1, Value(t)}});
    }
    void addContact(int id, const QString& name, const QString& account, bool active)
    {
        addRow(*open(QStringLiteral("SELECT * FROM tblContacts"), link), {{0, Value(id)}, {1, Value(QStringLiteral("c-%1").arg(id))},
                                                                          {2, Value(name)}, {3, Value(account)}, {4, Value(active)}});
    }

    // The texts of one column over the recordset's rows, from the first; leaves it at EOF.
    static QStringList column(Recordset& rs, const QString& name = QStringLiteral("Subject"))
    {
        QStringList out;
        if (rs.RecordCount() == 0) return out;
        rs.MoveFirst();
        for (; !rs.EOF_(); rs.MoveNext()) out << rs.Fields(name).value().textOrEmpty();
        return out;
    }

    TempDir dir;
    std::unique_ptr<StoreGateway> store;
    std::shared_ptr<Connection> local;
    std::shared_ptr<Connection> link;
};

} // namespace steplets::test
