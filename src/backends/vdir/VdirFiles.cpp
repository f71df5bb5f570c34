#include "VdirFiles.h"
#include "platform/PrivateFiles.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
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
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        throw vdirFailure(fail::FileAccess,
                          QStringLiteral("Cannot read the file \"%1\": %2").arg(path, f.errorString()));
    return f.readAll();
}

void removeFile(const QString& path)
{
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT)
        throw vdirFailure(fail::FileAccess,
                          QStringLiteral("Cannot delete the file \"%1\": %2").arg(path, systemError()));
}

} // namespace steplets::vdir
