// The iCalendar-to-task mapping on any bytes: no crash, and a task that is read is written so
// that it reads again.
#include "backends/vdir/TaskCalendar.h"
#include "backends/vdir/TaskProperties.h"
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace steplets::vdir;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QString error;
    auto task = readTaskCalendar(bytes, &error);
    if (!task) return 0;
    for (const QString& name : taskPropertyNames()) taskGet(*task, name);
    // A task is saved with a UID: its EntryID where the file had none.
    if (task->uid.isEmpty()) task->uid = QStringLiteral("entry-id");
    if (!readTaskCalendar(writeTaskCalendar(*task, bytes), &error)) std::abort();
    return 0;
}
