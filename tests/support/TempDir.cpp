#include "TempDir.h"
#include <QDirIterator>
#include <QFile>
#include <sys/stat.h>
#include <gtest/gtest.h>

namespace steplets::test {

TempDir::TempDir() : m_dir(QDir::tempPath() + QStringLiteral("/steplets-test-XXXXXX"))
{
    EXPECT_TRUE(m_dir.isValid()) << "cannot create a temporary directory";
}

QStringList notPrivate(const QString& root)
{
    QStringList found;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        struct stat st;
        if (::lstat(QFile::encodeName(path).constData(), &st) != 0 || S_ISLNK(st.st_mode)) continue;
        const unsigned mode = st.st_mode & 07777;
        if (mode != (S_ISDIR(st.st_mode) ? 0700u : 0600u))
            found << QDir(root).relativeFilePath(path) + QStringLiteral(" %1").arg(mode, 0, 8);
    }
    return found;
}

} // namespace steplets::test
