#include "SessionContext.h"
#include "platform/runtime/Failure.h"

namespace steplets {

SessionContext& session()
{
    static SessionContext context;
    return context;
}

namespace {
template <class T>
T& port(const std::shared_ptr<T>& p, const char* name)
{
    if (!p) throw Failure(91, QStringLiteral("Object variable or With block variable not set (%1)").arg(QLatin1String(name)));
    return *p;
}
} // namespace

UiHost& SessionContext::ui() const { return port(ports.ui, "UiHost"); }
StoreGateway& SessionContext::store() const { return port(ports.store, "StoreGateway"); }
SettingsGateway& SessionContext::settings() const { return port(ports.settings, "SettingsGateway"); }

} // namespace steplets
