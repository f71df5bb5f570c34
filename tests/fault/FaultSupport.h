#pragma once
// What the fault tests share: a mount namespace of the test process's own with a small tmpfs or
// a read-only bind mount in it, a disk filled up, the session of a processing run, and the checks
// of what a fault left behind.
#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace steplets::test {

// Puts this process into a mount namespace of its own, so its mounts go with it. False when the
// process may not (it needs root); the caller then skips.
bool enterPrivateMounts();
bool mountTmpfs(const QString& at, qint64 bytes);
bool mountReadOnly(const QString& path);              // a bind mount of path onto itself
// Writes a file into `dir` until its file system has no more than `leave` bytes free.
void fillDisk(const QString& dir, qint64 leave = 0);

// A session that processes a group of `templates` relative templates for time card 42 and
// closes the chooser.
QJsonObject processingSession(int templates);

// In a task folder: the .ics files that do not read as a task, and the temporary files.
QStringList unreadableTasks(const QString& folder);
QStringList temporariesIn(const QString& folder);
// What `steplets-admin check` names in a directory (empty when it finds all well).
QStringList checkProblems(const QString& dir);

} // namespace steplets::test
