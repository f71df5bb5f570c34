#include "TempDir.h"
#include <gtest/gtest.h>

namespace steplets::test {

TempDir::TempDir() : m_dir(QDir::tempPath() + QStringLiteral("/steplets-test-XXXXXX"))
{
    EXPECT_TRUE(m_dir.isValid()) << "cannot create a temporary directory";
}

} // namespace steplets::test
