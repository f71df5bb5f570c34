#include "OpenOptions.h"
#include "frmOptions.h"
#include "platform/Guard.h"
#include "session/SessionContext.h"

namespace steplets::modInitialize {

void OpenOptions()
{
    Guard g(QStringLiteral("modInitialize: OpenOptions"));
    g.attempt([&] {
        g(20);
        frmOptions dialog(session().ui());
        g(30); session().bOptionsOpen = true;
        g(40); dialog.Show();
        g(50); dialog.Unload();
    });
}

} // namespace steplets::modInitialize
