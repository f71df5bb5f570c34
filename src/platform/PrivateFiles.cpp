#include "PrivateFiles.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace steplets::files {

namespace {

QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

QByteArray native(const QString& path) { return QFile::encodeName(path); }

// A rename that refuses to replace; link and unlink where the file system has no such rename.
int renameNoReplace(const QByteArray& from, const QByteArray& to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return -1;
    if (::link(from.constData(), to.constData()) != 0) return -1;
    ::unlink(from.constData());
    return 0;
}

bool writeAll(int fd, const QByteArray& data)
{
    qsizetype done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(fd, data.constData() + done, static_cast<size_t>(data.size() - done));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            if (n == 0) errno = EIO;
            return false;
        }
        done += n;
    }
    return true;
}

} // namespace

bool makePrivatePath(const QString& path)
{
    const QString clean = QDir::cleanPath(QDir(path).absolutePath());
    if (QFileInfo(clean).isDir()) return true;
    const QString parent = QFileInfo(clean).path();
    if (parent != clean && !makePrivatePath(parent)) return false;
    return ::mkdir(native(clean).constData(), 0700) == 0 || (errno == EEXIST && QFileInfo(clean).isDir());
}

QString renameDurably(const QString& from, const QString& to, bool replace)
{
    const QByteArray f = native(from), t = native(to);
    if ((replace ? ::rename(f.constData(), t.constData()) : renameNoReplace(f, t)) != 0) return systemError();
    return {};
}

QString temporaryNameFor(const QString& path)
{
    static std::atomic<unsigned> counter{0};
    const QFileInfo target(path);
    return target.absolutePath() + QStringLiteral("/.%1.%2-%3.tmp").arg(target.fileName()).arg(::getpid()).arg(counter++);
}

QString writeDurably(const QString& path, const QByteArray& data, bool replace)
{
    const QString temp = temporaryNameFor(path);
    const QByteArray tempName = native(temp);
    struct stat existing;
    const mode_t mode = ::stat(native(path).constData(), &existing) == 0 ? (existing.st_mode & 07777) : 0600;
    const int fd = ::open(tempName.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0) return systemError();
    auto giveUp = [&] {
        const QString why = systemError();
        ::unlink(tempName.constData());
        return why;
    };
    if (::fchmod(fd, mode) != 0 || !writeAll(fd, data) || ::fsync(fd) != 0) {
        const QString why = giveUp();
        ::close(fd);
        return why;
    }
    if (::close(fd) != 0) return giveUp();
    const QString renamed = renameDurably(temp, path, replace);
    if (!renamed.isEmpty() && QFileInfo::exists(temp)) ::unlink(tempName.constData());
    return renamed;
}

} // namespace steplets::files
