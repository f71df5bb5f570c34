// bench-templates: composing subjects and rolling dates, each the median of several runs, in the
// form "name: 41.3 ms (target <= 250 ms)". Exits 0 whatever the figures.
#include "backends/vdir/DemoContacts.h"
#include "backends/vdir/VdirStore.h"
#include "session/SessionContext.h"
#include "session/modDLLErrHandler.h"
#include "templates/DateRules.h"
#include "templates/EditedTemplate.h"
#include "templates/FormatField.h"
#include "BenchSupport.h"
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace steplets;
using namespace steplets::bench;

namespace {

constexpr int kSubjects = 100000;

class NoDisplay : public ol::ItemDisplay {
public:
    void displayTask(ol::TaskItem&, bool) override {}
    void displayContact(ol::ContactItem&, bool) override {}
};

} // namespace

int main()
{
    modDLLErrHandler::InstallDiscipline();
    // A present moment that moves with real time. Read from the wall clock once only: each
    // local-time reading of the C library may look at the zone file again, which would measure
    // the machine's time-zone set-up rather than the rules.
    const Date start = Date::fromQDateTime(QDateTime::currentDateTime());
    QElapsedTimer elapsed;
    elapsed.start();
    const modTasks::Clock systemClock = [&] { return Date(start.serial() + elapsed.nsecsElapsed() / 86'400e9); };

    // A contact of a real vdir and a template of four fill-ins, one of each kind.
    QTemporaryDir dir;
    vdir::writeDemoContacts(dir.filePath(QStringLiteral("contacts")));
    vdir::VdirConfig config;
    config.root = dir.path();
    auto ns = vdir::openVdirStore(config, std::make_shared<NoDisplay>())->GetNamespace();
    auto contact = ol::asContact(ns->GetItemFromID(QStringLiteral("c-ada"), QStringLiteral("store")));
    SessionContext& s = session();
    s.sUserName = QStringLiteral("Morgan Hale");
    s.sDesc = QStringLiteral("Quarterly filing");
    auto& t = modTasks::EditedTemplate();
    t.FillIn1 = QStringLiteral("Full Name (Outlook Contact Property)");
    t.FillIn2 = QStringLiteral("Description (from current TimeCard)");
    t.FillIn3 = QStringLiteral("Current Date");
    t.FillIn4 = QStringLiteral("Subject field from template");
    const QString subject = QStringLiteral("Annual review");

    qsizetype sink = 0;
    print("compose 100,000 subjects", timeIt([&] {
              for (int i = 0; i < kSubjects; ++i) sink += modTasks::FormatField(subject, contact, systemClock).size();
          }), 1000);

    const Date from = Date::fromParts(1980, 1, 1, 9, 0);
    print("roll a daily date from 1 Jan 1980 to today", timeIt([&] {
              sink += static_cast<qsizetype>(modTasks::RollForward(from, QStringLiteral("d"), systemClock).serial());
          }), 50);
    std::printf("%s", sink < 0 ? "\n" : "");
    return 0;
}
