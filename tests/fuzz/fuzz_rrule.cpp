// patternOfRrule on any text: no crash, and the rule it writes for the pattern reads back to the
// same pattern once its extras are applied.
#include "backends/vdir/Recurrence.h"
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace steplets::vdir;
    const QString rule = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const PatternData pattern = patternOfRrule(rule);
    PatternData back = patternOfRrule(rruleOf(pattern));
    for (const auto& [name, value] : patternExtras(pattern)) applyPatternExtra(back, name, value);
    if (!(back == pattern)) std::abort();
    return 0;
}
