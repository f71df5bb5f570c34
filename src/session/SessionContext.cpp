#include "SessionContext.h"
#include "platform/runtime/Failure.h"

namespace steplets {

SessionContext& session()
{
    static SessionContext context;
    return context;
}

Process& process()
{
    static Process p;
    return p;
}

namespace {
template <class T>
T& port(const std::shared_ptr<T>& p, const char* name)
{
    if (!p) throw Failure(91, QStringLiteral("Object variable or With block variable not set (%1)").arg(QLatin1String(name)));
    return *p;
}
} // namespace

UiHost& ui() { return port(process().ports.ui, "UiHost"); }
StoreGateway& store() { return port(process().ports.store, "StoreGateway"); }
SettingsGateway& settings() { return port(process().ports.settings, "SettingsGateway"); }

} // namespace steplets
