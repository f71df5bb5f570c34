#include "VdirFiles.h"
#include "platform/PrivateFiles.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace steplets::vdir {

namespace {

QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

Failure writeFailure(const QString& path, const QString& why)
{
    return vdirFailure(fail::FileAccess, QStringLiteral("Cannot write the file \"%1\": %2").arg(path, why));
}

} // namespace

QString failureSource() { return QStringLiteral("Steplets task store"); }

Failure vdirFailure(long number, const QString& description)
{
    return Failure(number, description, failureSource());
}

void writeFileAtomically(const QString& path, const QByteArray& data, bool replace)
{
    const QString why = files::writeDurably(path, data, replace);
    if (!why.isEmpty())
        throw writeFailure(path, why);
}

QByteArray readWholeFile(const QString& path)
{
    auto cannotRead = [&](const QString& why) {
        return vdirFailure(fail::FileAccess, QStringLiteral("Cannot read the file \"%1\": %2").arg(path, why));
    };
    // A device or a pipe under an item's name would be read (or waited on) for ever.
    struct stat st;
    if (::stat(QFile::encodeName(path).constData(), &st) == 0 && !S_ISREG(st.st_mode))
        throw cannotRead(QStringLiteral("it is not a regular file"));
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        throw cannotRead(f.errorString());
    if (::fstat(f.handle(), &st) != 0 || !S_ISREG(st.st_mode))
        throw cannotRead(QStringLiteral("it is not a regular file"));
    const QByteArray data = f.read(kMaxFileBytes + 1);
    if (data.size() > kMaxFileBytes)
        throw cannotRead(QStringLiteral("it is larger than %1 MB").arg(kMaxFileBytes >> 20));
    return data;
}

void removeFile(const QString& path)
{
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT)
        throw vdirFailure(fail::FileAccess,
                          QStringLiteral("Cannot delete the file \"%1\": %2").arg(path, systemError()));
}

} // namespace steplets::vdir
