// The vCard reader and the contact mapping on any bytes: no crash, and a card that is read is
// written so that it reads again.
#include "backends/vdir/ContactCard.h"
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace steplets::vdir;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QString error;
    const auto contact = readContactCard(bytes, &error);
    if (!contact) return 0;
    for (const QString& name : contactFillInProperties()) contactValue(*contact, name);
    if (!readContactCard(writeContactCard(*contact), &error)) std::abort();
    return 0;
}
