#include "PrivateFiles.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace steplets::files {

namespace {

QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

QByteArray native(const QString& path) { return QFile::encodeName(path); }

const QRegularExpression& temporaryPattern()
{
    // A database made under such a name may have its journal files beside it.
    static const QRegularExpression pattern(QStringLiteral("^\\..+\\.([0-9]+)-[0-9]+\\.tmp(-wal|-shm|-journal)?$"));
    return pattern;
}

// EINVAL: the file system cannot sync a folder, and has nothing to make durable that way.
QString syncFolder(const QString& dir)
{
    const int fd = ::open(native(dir).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return systemError();
    const bool synced = ::fsync(fd) == 0 || errno == EINVAL;
    const QString why = synced ? QString() : systemError();
    ::close(fd);
    return why;
}

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
    return syncFolder(QFileInfo(to).absolutePath());
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

bool isTemporaryName(const QString& fileName) { return temporaryPattern().match(fileName).hasMatch(); }

int sweepTemporaries(const QString& dir)
{
    int removed = 0;
    const QStringList names = QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& name : names) {
        const QRegularExpressionMatch m = temporaryPattern().match(name);
        if (!m.hasMatch()) continue;
        // A writer that still runs may be about to rename its file into place.
        const pid_t pid = static_cast<pid_t>(m.captured(1).toLongLong());
        if (pid == ::getpid() || (pid > 0 && (::kill(pid, 0) == 0 || errno == EPERM))) continue;
        if (::unlink(native(QDir(dir).filePath(name)).constData()) == 0) ++removed;
    }
    return removed;
}

} // namespace steplets::files
