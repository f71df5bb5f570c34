#pragma once
// A typed event of a control or form: handlers are connected by the window that owns the control
// and run synchronously, in the order connected, whenever the control raises the event.
#include <functional>
#include <utility>
#include <vector>

namespace steplets {

template <class... Args>
class Event {
public:
    using Handler = std::function<void(Args...)>;

    void connect(Handler h) { m_handlers.push_back(std::move(h)); }
    bool connected() const { return !m_handlers.empty(); }

    // A handler may connect further handlers or unload the window while it runs: the list is
    // copied first so the raise is not disturbed.
    void operator()(Args... args) const {
        const auto handlers = m_handlers;
        for (const auto& h : handlers) h(args...);
    }

private:
    std::vector<Handler> m_handlers;
};

} // namespace steplets
