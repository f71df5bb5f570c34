#pragma once
// File primitives of the vdir: durable writes by temporary file, fsync and rename; reads that
// name the file when they fail; the failures the backend raises.
#include "platform/runtime/Failure.h"
#include <QByteArray>
#include <QString>

namespace steplets::vdir {

// The source that the backend's failures carry.
QString failureSource();

// Failure numbers, as the mail client's object model gives them.
namespace fail {
constexpr long NotFound = -2147221233;       // no such item, folder or store
constexpr long InvalidArgument = -2147024809; // a value the item refuses
constexpr long NoSuchProperty = 438;         // the item has no property of that name
constexpr long FileAccess = 75;              // the file could not be read or written
constexpr long BadFile = -2147467259;        // the file holds no valid item
}

Failure vdirFailure(long number, const QString& description);

// Writes data to a hidden temporary file beside path, flushes it to disk, then renames it over
// path (never over an existing file unless `replace`), so a reader sees the old or the new
// content and never a part; the file keeps its mode, a new one is 0600.
void writeFileAtomically(const QString& path, const QByteArray& data, bool replace = true);
// The largest item file read; a task or a card is a few kilobytes.
constexpr qint64 kMaxFileBytes = 16 << 20;
// A regular file's whole content; anything else, or a file above kMaxFileBytes, is a failure
// naming the file.
QByteArray readWholeFile(const QString& path);
void removeFile(const QString& path);

} // namespace steplets::vdir
