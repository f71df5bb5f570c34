#include "HelpKey.h"
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QUrl>

namespace steplets::qt {

HelpKey::HelpKey(std::function<QString()> helpFile, QStringList installedFolders, Log log)
    : m_helpFile(std::move(helpFile)), m_installed(std::move(installedFolders)), m_log(std::move(log))
{
}

QString HelpKey::pageFor(const QString& helpFile, const QStringList& installedFolders)
{
    if (helpFile.isEmpty()) return {};
    // The component writes a Windows separator before the file's name.
    const QFileInfo chm(QString(helpFile).replace(QLatin1Char('\\'), QLatin1Char('/')));
    const QString page = chm.completeBaseName() + QStringLiteral(".html");
    for (const QString& folder : QStringList{chm.absolutePath()} + installedFolders) {
        if (folder.isEmpty()) continue;
        const QString candidate = QDir(folder).filePath(page);
        if (QFileInfo(candidate).isFile()) return candidate;
    }
    return {};
}

bool HelpKey::open()
{
    const QString helpFile = m_helpFile();
    const QString page = pageFor(helpFile, m_installed);
    if (page.isEmpty()) {
        if (m_log) m_log(QStringLiteral("F1: no help page for \"%1\" beside it or in %2").arg(helpFile, m_installed.join(QStringLiteral(", "))));
        return false;
    }
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(page))) return true;
    if (m_log) m_log(QStringLiteral("F1: no program on this desktop opens %1").arg(page));
    return false;
}

bool HelpKey::eventFilter(QObject* watched, QEvent* event)
{
    // Only the first delivery of a key press counts: an ignored one travels on to the parents.
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1 && watched->isWidgetType()) {
        open();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace steplets::qt
