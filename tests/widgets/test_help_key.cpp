// F1 in any window of the process: the HTML page that stands for the help file opens through the
// desktop's URL handling (recorded here by a handler of the test, so nothing really opens); a
// missing page writes one line to the log and nothing else happens.
#include "QtUiHost.h"
#include "TempDir.h"
#include "UrlRecorder.h"
#include "WidgetSupport.h"
#include <QFile>
#include <QLineEdit>
#include <QTest>

namespace {

TEST(HelpKey, F1OpensThePageOfTheHelpFilesBaseNameBesideItElseInTheDataFolderElseLogsThatThereIsNone)
{
    steplets::test::widgetApp();
    struct Case {
        bool beside, inData;   // Ordivane.html next to the help file, in the program's data folder
        int opensFrom;         // 0 beside, 1 data folder, -1 none
    };
    for (const Case c : {Case{true, true, 0}, Case{false, true, 1}, Case{false, false, -1}}) {
        steplets::test::TempDir folders[2];
        for (int i = 0; i < 2; ++i)
            if (i == 0 ? c.beside : c.inData) {
                QFile page(folders[i].file(QStringLiteral("Ordivane.html")));
                ASSERT_TRUE(page.open(QIODevice::WriteOnly));
            }
        steplets::test::UrlRecorder recorder;
        QStringList logged;
        steplets::qt::QtUiHost host;
        host.setHelp({folders[1].path()}, [&logged](const QString& line) { logged << line; });
        // As the component names it: its folder, a Windows separator, the .chm.
        host.setHelpFile(folders[0].path() + QStringLiteral("\\Ordivane.chm"));
        QLineEdit anyWindow;
        anyWindow.show();
        QTest::keyClick(&anyWindow, Qt::Key_F1);
        if (c.opensFrom < 0) {
            EXPECT_TRUE(recorder.opened.isEmpty());
            ASSERT_EQ(logged.size(), 1);
            EXPECT_TRUE(logged.first().contains(QStringLiteral("Ordivane.chm")));
        } else {
            EXPECT_EQ(recorder.opened, QList<QUrl>{QUrl::fromLocalFile(folders[c.opensFrom].file(QStringLiteral("Ordivane.html")))});
            EXPECT_TRUE(logged.isEmpty());
        }
    }
}

} // namespace
