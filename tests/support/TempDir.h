#pragma once
// A fresh temporary directory per test, removed afterwards; tests never write elsewhere.
#include <QString>
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

} // namespace steplets::test
