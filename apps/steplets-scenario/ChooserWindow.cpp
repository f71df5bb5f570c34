#include "ChooserWindow.h"
#include "chooser/frmSteplet.h"

namespace steplets::scenario {

std::unique_ptr<SessionWindow> makeChooserWindow(UiHost& host)
{
    return steplets::makeChooserWindow(host);
}

} // namespace steplets::scenario
