// The scenario file reader on any bytes: a scenario or a reason, never a crash.
#include "Scenario.h"
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QString error;
    steplets::scenario::parseScenario(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)), &error);
    return 0;
}
