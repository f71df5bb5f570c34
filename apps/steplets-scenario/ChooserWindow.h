#pragma once
// The main window that OpenSteplets shows in a played session. Kept apart so that wiring the
// chooser is one line here and nowhere else.
#include "session/clsSteplets.h"
#include <memory>

namespace steplets { class UiHost; }

namespace steplets::scenario {

// The chooser window, shown modally on the given host.
std::unique_ptr<SessionWindow> makeChooserWindow(UiHost& host);

} // namespace steplets::scenario
