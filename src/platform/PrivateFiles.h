#pragma once
// Files and folders that hold one user's data: folders made 0700, new files 0600, a rewritten
// file keeping the mode it had, and writes that are on disk, whole, before they count.
#include <QByteArray>
#include <QString>

namespace steplets::files {

// Makes every missing folder of `path` with mode 0700. False when one cannot be made.
bool makePrivatePath(const QString& path);

// Writes `data` to a hidden temporary file beside `path`, syncs it, gives it the mode of the
// file it replaces (0600 for a new one) and renames it into place, so a reader sees the old or
// the new content. With `replace` false an existing file is never overwritten. Returns what went
// wrong, or an empty text.
QString writeDurably(const QString& path, const QByteArray& data, bool replace = true);

// Renames `from` to `to`; with `replace` false an existing `to` is left alone and the rename
// fails. Returns what went wrong, or an empty text.
QString renameDurably(const QString& from, const QString& to, bool replace = true);

// A fresh hidden name beside `path` for a file that is made whole before it is renamed there:
// ".<name>.<pid>-<n>.tmp".
QString temporaryNameFor(const QString& path);

} // namespace steplets::files
