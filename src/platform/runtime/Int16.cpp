#include "Int16.h"
#include "Value.h"
#include <cmath>

namespace steplets {

Int16 Int16::from(long long v)
{
    if (v < -32768 || v > 32767) throw Failure::overflow();
    return Int16(static_cast<std::int16_t>(v));
}

Int16 Int16::from(double v)
{
    if (!std::isfinite(v)) throw Failure::overflow();
    const double r = roundHalfEven(v);
    if (r < -32768.0 || r > 32767.0) throw Failure::overflow();
    return Int16(static_cast<std::int16_t>(r));
}

} // namespace steplets
