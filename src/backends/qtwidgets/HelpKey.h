#pragma once
// F1 in any window of the process opens the process's help. The help file keeps the name the
// component gives it (the program's folder, "\", "Ordivane.chm"); no such viewer exists here, so
// the HTML help of the same base name is opened instead, beside that path or else in the
// program's installed data folder. A missing page costs one line in the log, never a report.
#include <QObject>
#include <QString>
#include <functional>

namespace steplets::qt {

class HelpKey : public QObject {
public:
    using Log = std::function<void(const QString&)>;
    HelpKey(std::function<QString()> helpFile, QStringList installedFolders, Log log);

    // The page that stands for `helpFile`, or empty when neither place has one.
    static QString pageFor(const QString& helpFile, const QStringList& installedFolders);
    // Opens it; false (and a line in the log) when there is none or nothing can open it.
    bool open();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<QString()> m_helpFile;
    QStringList m_installed;
    Log m_log;
};

} // namespace steplets::qt
