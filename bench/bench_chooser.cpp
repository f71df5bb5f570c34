// bench-chooser: the chooser opened as the desktop program opens it (Qt Widgets, offscreen) on
// 10,000 templates, 1,000 groups of ten and 5,000 contacts, each with its card in the vdir: the
// time from the host's call until the chooser waits for the user, and the peak memory of the
// desktop program itself doing the same in a process of its own (ru_maxrss). Prints
// "name: 12.3 ms (target <= 250 ms)" lines and exits 0 whatever the figures.
#include "BenchSupport.h"
#include "Desktop.h"
#include "FormView.h"
#include "QtUiHost.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/StoreData.h"
#include "controls/Form.h"
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace steplets;
using namespace steplets::bench;

namespace {

constexpr int kTemplates = 10000;
constexpr int kGroups = 1000;
constexpr int kContacts = 5000;

// The stores of a large office, made untimed; cards are written plainly, as speed matters here
// more than a sync.
void makeData(const QString& home)
{
    sqlcipher::createDatabases(home);
    QJsonArray templates, groups, assignments, contacts;
    for (int i = 1; i <= kTemplates; ++i)
        templates.append(QJsonObject{{"ID", i}, {"Subject", QStringLiteral("Template %1 of the office").arg(i)}, {"DateType", i % 3},
                                     {"DueDateOffset", 1440}, {"FillIn1", "Subject field from template"}, {"FillIn2", "[Empty]"},
                                     {"FillIn3", "[Empty]"}, {"FillIn4", "[Empty]"}, {"Tag", 0}});
    for (int g = 1; g <= kGroups; ++g) {
        groups.append(QJsonObject{{"ID", g}, {"GroupName", QStringLiteral("Group %1").arg(g)}});
        for (int k = 0; k < kTemplates / kGroups; ++k) assignments.append(QJsonObject{{"GroupID", g}, {"TaskID", (g - 1) * 10 + k + 1}});
    }
    const QString cards = QDir(home).filePath(QStringLiteral("vdir/contacts"));
    QDir().mkpath(cards);
    QDir().mkpath(QDir(home).filePath(QStringLiteral("vdir/tasks")));
    for (int c = 1; c <= kContacts; ++c) {
        const QString id = QStringLiteral("c-%1").arg(c);
        contacts.append(QJsonObject{{"ContactID", c}, {"ContactEntryID", id}, {"ContactName", QStringLiteral("Contact %1").arg(c)},
                                    {"ContactAccount", QStringLiteral("ACC-%1").arg(c, 5, 10, QLatin1Char('0'))}, {"Active", true}});
        QFile card(QDir(cards).filePath(id + QStringLiteral(".vcf")));
        if (card.open(QIODevice::WriteOnly))
            card.write(QStringLiteral("BEGIN:VCARD\r\nVERSION:4.0\r\nUID:%1\r\nFN:Contact %2\r\nN:%2;Contact;;;\r\nEND:VCARD\r\n")
                           .arg(id).arg(c).toUtf8());
    }
    sqlcipher::loadStore(home, QJsonObject{{"local", QJsonObject{{"tblSteplets", templates}, {"tblTaskGroups", groups},
                                                                  {"tblGroupAssignments", assignments}}},
                                           {"link", QJsonObject{{"tblContacts", contacts}}}});
}

// One session in this process: from the host's call until the chooser is on the screen, waiting
// for the user, who then closes it. Negative when the chooser never came.
double openChooser(const QString& home)
{
    desktop::HostOptions options = desktop::defaultHostOptions();
    options.home = home;
    auto host = std::make_shared<qt::QtUiHost>();
    double ms = -1.0;
    QElapsedTimer t;
    QTimer poll;
    poll.setInterval(1);
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (host->modalStack().empty()) return;
        Form& chooser = *host->modalStack().back();
        qt::FormView* view = host->viewOf(chooser);
        if (chooser.name() != QLatin1String("frmSteplet") || !view || !view->isVisible()) return;
        if (ms < 0) ms = t.nsecsElapsed() / 1e6;
        poll.stop();
        view->close();
    });
    poll.start();
    t.start();
    desktop::runSession(options, host);
    return ms;
}

// The desktop program itself on the same data, opened and closed by a played script; its
// ru_maxrss in megabytes, or negative when it did not end well.
double peakMemoryOfTheProgram(const QString& program, const QString& home, const QString& script)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        // Its chatter about the offscreen platform is no figure.
        const int quiet = ::open("/dev/null", O_WRONLY);
        ::dup2(quiet, STDOUT_FILENO);
        ::dup2(quiet, STDERR_FILENO);
        const QByteArray h = QFile::encodeName(home), s = QFile::encodeName(script), p = QFile::encodeName(program);
        ::execl(p.constData(), p.constData(), "--home", h.constData(), "--play", s.constData(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    int status = 0;
    struct rusage usage {};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0) return -1.0;
    return usage.ru_maxrss / 1024.0;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QTemporaryDir dir;
    const QString home = dir.path();
    qputenv("XDG_STATE_HOME", QFile::encodeName(QDir(home).filePath(QStringLiteral("state"))));
    makeData(home);

    std::vector<double> runs;
    for (int i = 0; i < kRuns; ++i) runs.push_back(openChooser(home));
    if (*std::min_element(runs.begin(), runs.end()) < 0)
        std::printf("open the chooser on 10,000 templates, 1,000 groups, 5,000 contacts: not measured (it never came)\n");
    else
        print("open the chooser on 10,000 templates, 1,000 groups, 5,000 contacts", median(runs), 250);

    const QString script = QDir(home).filePath(QStringLiteral("close.json"));
    QFile close(script);
    if (close.open(QIODevice::WriteOnly)) close.write(R"({"script": [{"form": "frmSteplet", "close": true}]})");
    close.close();
    const QString program = QCoreApplication::applicationDirPath() + QStringLiteral("/../apps/steplets/steplets");
    const double mb = peakMemoryOfTheProgram(program, home, script);
    if (mb < 0)
        std::printf("desktop program peak memory on the same data: not measured (%s did not end well)\n", qPrintable(program));
    else
        printFigure("desktop program peak memory on the same data", mb, "MB", 80);
    return 0;
}
