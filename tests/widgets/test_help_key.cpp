// F1 in any window of the process: the HTML page that stands for the help file opens through the
// desktop's URL handling (recorded here by a handler of the test, so nothing really opens); a
// missing page writes one line to the log and nothing else happens.
#include "QtUiHost.h"
#include "TempDir.h"
#include "UrlRecorder.h"
#include "WidgetSupport.h"
#include <QDesktopServices>
#include <QFile>
#include <QLineEdit>
#include <QTest>
#include <QUrl>

namespace {

void touch(const QString& path)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("<html></html>");
}

struct HelpCase {
    const char* name;
    bool besideHelpFile;       // Ordivane.html next to the help file's path
    bool inDataFolder;         // Ordivane.html in the program's data folder
    const char* expectedFolder; // "beside", "data" or "" for none
};

class HelpKeyTest : public ::testing::TestWithParam<HelpCase> {};

TEST_P(HelpKeyTest, F1OpensThePageOfTheHelpFilesBaseNameOrLogsThatThereIsNone)
{
    steplets::test::widgetApp();
    const HelpCase c = GetParam();
    steplets::test::TempDir beside, data;
    if (c.besideHelpFile) touch(beside.file(QStringLiteral("Ordivane.html")));
    if (c.inDataFolder) touch(data.file(QStringLiteral("Ordivane.html")));
    steplets::test::UrlRecorder recorder;
    QStringList logged;

    steplets::qt::QtUiHost host;
    host.setHelp({data.path()}, [&logged](const QString& line) { logged << line; });
    // As the component names it: its folder, a Windows separator, the .chm.
    host.setHelpFile(beside.path() + QStringLiteral("\\Ordivane.chm"));
    QLineEdit anyWindow;
    anyWindow.show();
    QTest::keyClick(&anyWindow, Qt::Key_F1);

    const QString folder = QString::fromLatin1(c.expectedFolder);
    if (folder.isEmpty()) {
        EXPECT_TRUE(recorder.opened.isEmpty());
        ASSERT_EQ(logged.size(), 1);
        EXPECT_TRUE(logged.first().contains(QStringLiteral("Ordivane.chm")));
    } else {
        const QString dir = folder == QLatin1String("beside") ? beside.path() : data.path();
        ASSERT_EQ(recorder.opened.size(), 1);
        EXPECT_EQ(recorder.opened.first(), QUrl::fromLocalFile(dir + QStringLiteral("/Ordivane.html")));
        EXPECT_TRUE(logged.isEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(Places, HelpKeyTest,
                         ::testing::Values(HelpCase{"Beside", true, true, "beside"}, HelpCase{"DataFolder", false, true, "data"},
                                           HelpCase{"Nowhere", false, false, ""}),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace

