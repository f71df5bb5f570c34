#pragma once
// Both databases created afresh in a temporary directory, opened through the store port, with
// small builders for the rows the tests need.
#include "TempDir.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/SqlCipherStore.h"
#include "platform/StoreGateway.h"
#include <gtest/gtest.h>
#include <functional>

namespace steplets::test {

class StoreFixture : public ::testing::Test {
protected:
    void SetUp() override
    {
        sqlcipher::createDatabases(dir.path());
        local = store.CreateConnection();
        local->Open(storeFiles::localConnectionString(dir.path()));
        link = store.CreateConnection();
        link->Open(storeFiles::linkConnectionString(dir.path()));
    }

    std::shared_ptr<Recordset> open(const QString& query, const std::shared_ptr<Connection>& cn,
                                    int cursor = ado::adOpenKeyset, int lock = ado::adLockOptimistic)
    {
        auto rs = store.CreateRecordset();
        rs->Open(query, cn, cursor, lock, ado::adCmdText);
        return rs;
    }

    // Adds templates with the given subjects through a recordset of their own; returns their IDs.
    std::vector<int> addTemplates(const QStringList& subjects)
    {
        auto rs = open(QStringLiteral("SELECT * FROM tblSteplets"), local);
        std::vector<int> ids;
        for (const QString& s : subjects) {
            rs->AddNew();
            rs->Fields(QStringLiteral("Subject")).setValue(Value(s));
            rs->Update();
            ids.push_back(rs->Fields(0).value().toLong());
        }
        return ids;
    }

    void addAssignments(std::initializer_list<std::pair<int, int>> rows)
    {
        auto rs = open(QStringLiteral("SELECT * FROM tblGroupAssignments"), local);
        for (const auto& [g, t] : rows) {
            rs->AddNew();
            rs->Fields(0).setValue(Value(g));
            rs->Fields(1).setValue(Value(t));
            rs->Update();
        }
    }

    void addContact(int id, const QString& entryId, const QString& name, const QString& account, bool active)
    {
        auto rs = open(QStringLiteral("SELECT * FROM tblContacts"), link);
        rs->AddNew();
        rs->Fields(QStringLiteral("ContactID")).setValue(Value(id));
        rs->Fields(QStringLiteral("ContactEntryID")).setValue(Value(entryId));
        rs->Fields(QStringLiteral("ContactName")).setValue(Value(name));
        rs->Fields(QStringLiteral("ContactAccount")).setValue(Value(account));
        rs->Fields(QStringLiteral("Active")).setValue(Value(active));
        rs->Update();
    }

    // The texts of one column over the recordset's rows, from the first; leaves it at EOF.
    static QStringList column(Recordset& rs, const QString& name)
    {
        QStringList out;
        if (rs.RecordCount() == 0) return out;
        rs.MoveFirst();
        while (!rs.EOF_()) {
            out << rs.Fields(name).value().textOrEmpty();
            rs.MoveNext();
        }
        return out;
    }

    // The failure number that `f` raises, 0 when none.
    static long failureOf(const std::function<void()>& f)
    {
        try {
            f();
        } catch (const Failure& e) {
            return e.number();
        }
        return 0;
    }

    TempDir dir;
    sqlcipher::SqlCipherStore store;
    std::shared_ptr<Connection> local;
    std::shared_ptr<Connection> link;
};

} // namespace steplets::test
