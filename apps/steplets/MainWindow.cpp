#include "MainWindow.h"
#include "Desktop.h"
#include "FormView.h"
#include "QtUiHost.h"
#include "session/modDLLErrHandler.h"
#include <QDesktopServices>
#include <QDir>
#include <QEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QUrl>

namespace steplets::desktop {

namespace {

const QString kGeometryKey = QStringLiteral("MainWindow/geometry");

// Writes the window's place when it goes, so the next start finds it there.
class PlaceKeeper : public QObject {
public:
    PlaceKeeper(QString file, QWidget* window) : QObject(window), m_file(std::move(file)), m_window(window) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == m_window && event->type() == QEvent::Hide && !event->spontaneous()) {
            QSettings settings(m_file, QSettings::IniFormat);
            settings.setValue(kGeometryKey, m_window->saveGeometry());
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QString m_file;
    QWidget* m_window;
};

} // namespace

QString desktopSettingsFile(const HostOptions& options, const QString& home)
{
    return QDir(configDirectory(options, home)).filePath(QStringLiteral("steplets/desktop.ini"));
}

void dressMainWindow(qt::QtUiHost& host, const HostOptions& options, const QString& home)
{
    const QString file = desktopSettingsFile(options, home);
    qt::QtUiHost* raw = &host;
    host.setMainWindowHook([raw, file, home](qt::FormView& view) {
        // No accelerator on the menu: the window's own captions use most letters.
        QMenu* help = view.menuBar()->addMenu(QStringLiteral("Help"));
        help->setObjectName(QStringLiteral("helpMenu"));
        help->addAction(QStringLiteral("Steplets Help\tF1"), &view, [raw] { raw->openHelp(); })->setObjectName(QStringLiteral("helpContents"));
        help->addAction(QStringLiteral("Open Data Folder"), &view, [&view, home] { openDataFolder(&view, home); })
            ->setObjectName(QStringLiteral("openDataFolder"));
        help->addSeparator();
        help->addAction(QStringLiteral("About Steplets"), &view, [&view, home] { showAbout(&view, home); })
            ->setObjectName(QStringLiteral("about"));
        const QByteArray geometry = QSettings(file, QSettings::IniFormat).value(kGeometryKey).toByteArray();
        if (!geometry.isEmpty()) view.restoreGeometry(geometry);
        view.installEventFilter(new PlaceKeeper(file, &view));
    });
}

void showAbout(QWidget* parent, const QString& home)
{
    QMessageBox box(QMessageBox::Information, QStringLiteral("About Steplets"),
                    QStringLiteral("Steplets %1").arg(modDLLErrHandler::VersionText()), QMessageBox::NoButton, parent);
    box.setObjectName(QStringLiteral("About"));
    box.setInformativeText(QStringLiteral("The task-template manager.\n\nData folder: %1").arg(QDir::toNativeSeparators(home)));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    QPushButton* open = box.addButton(QStringLiteral("Open Data Folder"), QMessageBox::ActionRole);
    open->setObjectName(QStringLiteral("openDataFolder"));
    box.addButton(QMessageBox::Close);
    box.exec();
    if (box.clickedButton() == open) openDataFolder(parent, home);
}

void openDataFolder(QWidget* parent, const QString& home)
{
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(home))) return;
    QMessageBox::information(parent, QStringLiteral("Steplets"),
                             QStringLiteral("No program is set up to open folders. The data folder is %1.")
                                 .arg(QDir::toNativeSeparators(home)));
}

} // namespace steplets::desktop
