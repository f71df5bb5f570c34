#pragma once
// The main window that OpenSteplets shows in a played session. Kept apart so that wiring the
// chooser is one line here and nowhere else.
#include "session/clsSteplets.h"
#include <memory>

namespace steplets { class UiHost; }

namespace steplets::scenario {

// The chooser window; nothing (so OpenSteplets shows no window) while none is wired.
std::unique_ptr<SessionWindow> makeChooserWindow(UiHost& host);

} // namespace steplets::scenario
