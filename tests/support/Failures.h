#pragma once
// The failure a call raises, for tests that check its number or its text.
#include "platform/runtime/Failure.h"
#include <functional>

namespace steplets::test {

// The failure `f` raised; number 0 and no text when it raised none.
inline Failure failure(const std::function<void()>& f)
{
    try {
        f();
    } catch (const Failure& e) {
        return e;
    }
    return Failure(0, QString());
}
inline long failureOf(const std::function<void()>& f) { return failure(f).number(); }

} // namespace steplets::test
