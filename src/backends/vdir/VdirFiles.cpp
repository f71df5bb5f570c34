#include "VdirFiles.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <atomic>
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

void writeFileAtomically(const QString& path, const QByteArray& data)
{
    static std::atomic<unsigned> counter{0};
    const QFileInfo target(path);
    const QString temp = target.absolutePath() + QStringLiteral("/.%1.%2-%3.tmp")
                             .arg(target.fileName()).arg(::getpid()).arg(counter++);
    const QByteArray tempName = QFile::encodeName(temp);
    // 1. Write the new content to a fresh temporary file.
    const int fd = ::open(tempName.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0)
        throw writeFailure(path, systemError());
    qsizetype done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(fd, data.constData() + done, static_cast<size_t>(data.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            const QString why = systemError();
            ::close(fd);
            ::unlink(tempName.constData());
            throw writeFailure(path, why);
        }
        done += n;
    }
    // 2. Make it durable before it takes the place of the old file.
    if (::fsync(fd) != 0 || ::close(fd) != 0) {
        const QString why = systemError();
        ::unlink(tempName.constData());
        throw writeFailure(path, why);
    }
    // 3. Put it in place in one step.
    if (::rename(tempName.constData(), QFile::encodeName(path).constData()) != 0) {
        const QString why = systemError();
        ::unlink(tempName.constData());
        throw writeFailure(path, why);
    }
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
