#pragma once
// A fresh temporary directory per test, removed afterwards; tests never write elsewhere.
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace steplets::test {

class TempDir {
public:
    TempDir();
    QString path() const { return m_dir.path(); }
    QString file(const QString& name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
};

// Every file under `root` that is not 0600 and every folder that is not 0700, with its mode, as
// "vdir/tasks 755"; empty when all of them are the user's alone.
QStringList notPrivate(const QString& root);

} // namespace steplets::test
