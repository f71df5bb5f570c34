// bench-store: the figures of the store, each the median of several runs, in the form
// "name: 41.3 ms (target <= 250 ms)". Exits 0 whatever the figures.
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/SqlCipherStore.h"
#include "platform/StoreGateway.h"
#include "BenchSupport.h"
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace steplets;
using namespace steplets::bench;

namespace {

constexpr int kRows = 32000;

// 32,000 templates, every 100th marked, in one transaction through a command.
void fillTemplates(sqlcipher::SqlCipherStore& store, const std::shared_ptr<Connection>& cn)
{
    auto begin = store.CreateCommand();
    begin->ActiveConnection(cn);
    auto run = [&](const QString& sql) {
        begin->CommandText(sql);
        begin->Execute(ado::adExecuteNoRecords);
    };
    run(QStringLiteral("BEGIN"));
    for (int i = 1; i <= kRows; ++i) {
        run(QStringLiteral("INSERT INTO tblSteplets (Subject, DateType, DueDate, FillIn1, FillIn2, FillIn3, FillIn4, "
                           "Body, Complete, Tag) VALUES ('Template %1', %2, '2026-04-15T17:00:00', "
                           "'Subject field from template', '[Empty]', '[Empty]', '[Empty]', "
                           "'A body text of a plausible length for a task template, number %1.', False, %3)")
                .arg(i).arg(i % 3).arg(i % 100 == 0 ? -1 : 0));
    }
    run(QStringLiteral("COMMIT"));
}

} // namespace

int main()
{
    QTemporaryDir dir;
    sqlcipher::createDatabases(dir.path());
    sqlcipher::SqlCipherStore store;

    const double open = timeIt([] {}, [&] {
        auto local = store.CreateConnection();
        auto link = store.CreateConnection();
        local->Open(storeFiles::localConnectionString(dir.path()));
        link->Open(storeFiles::linkConnectionString(dir.path()));
    });
    print("open both databases", open, 250);

    auto cn = store.CreateConnection();
    cn->Open(storeFiles::localConnectionString(dir.path()));
    fillTemplates(store, cn);
    auto rs = store.CreateRecordset();
    rs->Open(QStringLiteral("SELECT * FROM tblSteplets"), cn, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdText);

    const double openTemplates = timeIt([&] { rs->Close(); }, [&] {
        rs->Open(QStringLiteral("SELECT * FROM tblSteplets"), cn, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdText);
    });
    print("open the template recordset of 32,000 rows", openTemplates, 250);

    long count = 0;
    const double recordCount = timeIt([&] { rs->Filter(0L); }, [&] { count = rs->RecordCount(); });
    print("RecordCount of 32,000 rows", recordCount, 10);

    const double filter = timeIt([&] { rs->Filter(0L); }, [&] {
        rs->Filter(QStringLiteral("Tag = -1"));
        count = rs->RecordCount();
    });
    print("filter Tag = -1 on 32,000 rows", filter, 10);

    const double filterId = timeIt([&] { rs->Filter(0L); }, [&] { rs->Filter(QStringLiteral("ID = 16000")); });
    print("filter ID = n on 32,000 rows", filterId, 10);

    const double reset = timeIt([&] { rs->Filter(0L); }, [&] {
        rs->MoveFirst();
        const long n = rs->RecordCount();
        for (long i = 0; i < n; ++i) {
            rs->Fields(QStringLiteral("Tag")).setValue(Value(Int16(0)));
            rs->Update();
            rs->MoveNext();
        }
    });
    print("reset 32,000 tags (320 marked), one Update each", reset, 1000);

    auto markAll = [&] {
        auto cmd = store.CreateCommand();
        cmd->ActiveConnection(cn);
        cmd->CommandText(QStringLiteral("UPDATE tblSteplets SET Tag = -1"));
        cmd->Execute(ado::adExecuteNoRecords);
        rs->Requery();
    };
    const double resetAll = timeIt(markAll, [&] {
        rs->MoveFirst();
        const long n = rs->RecordCount();
        for (long i = 0; i < n; ++i) {
            rs->Fields(QStringLiteral("Tag")).setValue(Value(Int16(0)));
            rs->Update();
            rs->MoveNext();
        }
    });
    print("reset 32,000 tags (all marked), one Update each", resetAll, 1000);
    return count < 0 ? 1 : 0;
}
