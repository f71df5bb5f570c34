#pragma once
// Files and folders that hold one user's data: folders made 0700, new files 0600, a rewritten
// file keeping the mode it had, and writes that are on disk, whole, before they count.
#include <QByteArray>
#include <QString>

namespace steplets::files {

// Makes every missing folder of `path` with mode 0700. False when one cannot be made.
bool makePrivatePath(const QString& path);

// Writes `data` to a hidden temporary file beside `path`, syncs it, gives it the mode of the
// file it replaces (0600 for a new one), renames it into place and syncs the folder, so a reader
// sees the old or the new content and a power cut after the return keeps the new. With
// `replace` false an existing file is never overwritten. Returns what went wrong, or an empty
// text.
QString writeDurably(const QString& path, const QByteArray& data, bool replace = true);

// Renames `from` to `to` and syncs the folder of `to`; with `replace` false an existing `to` is
// left alone and the rename fails. Returns what went wrong, or an empty text.
QString renameDurably(const QString& from, const QString& to, bool replace = true);

// A fresh hidden name beside `path` for a file that is made whole before it is renamed there:
// ".<name>.<pid>-<n>.tmp". What a killed writer leaves under such names is swept.
QString temporaryNameFor(const QString& path);

// Whether a file name is one of those temporary names (or a database journal beside one).
bool isTemporaryName(const QString& fileName);

// Removes the temporary files that writers which are no longer running left in `dir`, and
// returns how many went.
int sweepTemporaries(const QString& dir);

} // namespace steplets::files
