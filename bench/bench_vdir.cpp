// Speed of the vdir task store: finding one task among 10,000, and making and saving a task.
#include "backends/vdir/VdirStore.h"
#include "platform/OutlookGateway.h"
#include "BenchSupport.h"
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

using namespace steplets;
using namespace steplets::bench;

namespace {

// One task as processing makes it: add, 25 property writes, save.
QString makeTask(ol::MAPIFolder& folder, int n)
{
    auto t = folder.Items().Add();
    const Date due = Date::fromParts(2024, 1, 1).plusDays(n % 365);
    t->set(QStringLiteral("Subject"), Value(QStringLiteral("Task %1: review").arg(n)));
    t->set(QStringLiteral("ActualWork"), Value(30));
    t->set(QStringLiteral("BillingInformation"), Value("Client 12"));
    t->set(QStringLiteral("Categories"), Value("Business, Clients"));
    t->set(QStringLiteral("Companies"), Value("Byrne & Lowell"));
    t->set(QStringLiteral("Complete"), Value(false));
    t->set(QStringLiteral("DateCompleted"), Value(Date::noDate()));
    t->set(QStringLiteral("StartDate"), Value(due.plusDays(-2)));
    t->set(QStringLiteral("DueDate"), Value(due));
    t->set(QStringLiteral("Importance"), Value(2));
    t->set(QStringLiteral("Mileage"), Value("12"));
    t->set(QStringLiteral("NoAging"), Value(false));
    t->set(QStringLiteral("PercentComplete"), Value(0));
    t->set(QStringLiteral("ReminderOverrideDefault"), Value(true));
    t->set(QStringLiteral("ReminderPlaySound"), Value(true));
    t->set(QStringLiteral("ReminderSet"), Value(true));
    t->set(QStringLiteral("ReminderSoundFile"), Value("ding.wav"));
    t->set(QStringLiteral("ReminderTime"), Value(due.plusDays(-1)));
    t->set(QStringLiteral("Role"), Value("Owner"));
    t->set(QStringLiteral("Sensitivity"), Value(0));
    t->set(QStringLiteral("Status"), Value(1));
    t->set(QStringLiteral("TeamTask"), Value(false));
    t->set(QStringLiteral("TotalWork"), Value(60));
    auto p = t->GetRecurrencePattern();
    p->set(QStringLiteral("RecurrenceType"), Value(1));
    p->set(QStringLiteral("Interval"), Value(2));
    t->Save();
    return t->EntryID();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication qapp(argc, argv);
    QTemporaryDir tmp;
    QDir().mkpath(tmp.filePath(QStringLiteral("tasks")));
    vdir::VdirConfig config;
    config.root = tmp.path();
    auto app = vdir::openVdirStore(config, nullptr);
    auto ns = app->GetNamespace(QStringLiteral("MAPI"));
    auto folder = ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"));

    // Make the collection of 10,000 tasks, timing each of the first runs of add + writes + save.
    std::vector<QString> ids;
    std::vector<double> saveRuns;
    for (int i = 0; i < 10000; ++i) {
        QElapsedTimer t;
        t.start();
        ids.push_back(makeTask(*folder, i));
        if (i < 200)
            saveRuns.push_back(t.nsecsElapsed() / 1e6);
    }

    // A fresh store for the lookups, so the first read of each file is measured too.
    auto fresh = vdir::openVdirStore(config, nullptr)->GetNamespace(QStringLiteral("MAPI"));
    std::vector<double> coldRuns;
    std::vector<double> warmRuns;
    for (int i = 0; i < 200; ++i) {
        const QString& id = ids[(i * 7919) % ids.size()];
        QElapsedTimer t;
        t.start();
        fresh->GetItemFromID(id, QStringLiteral("store"));
        coldRuns.push_back(t.nsecsElapsed() / 1e6);
        t.restart();
        fresh->GetItemFromID(id, QStringLiteral("store"));
        warmRuns.push_back(t.nsecsElapsed() / 1e6);
    }
    print("GetItemFromID in 10,000 tasks, first read", median(coldRuns), 1);
    print("GetItemFromID in 10,000 tasks, read again", median(warmRuns), 1);
    print("add + 25 property writes + Save per task", median(saveRuns), 5);
    return 0;
}
