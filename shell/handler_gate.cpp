#include "shell/handler_gate.h"

namespace corvenna {

bool HandlerGate::Run(std::string_view name, const std::function<void()>& handler) {
    if (Busy()) return false;
    busy_ = true;
    try {
        handler();
    } catch (const std::exception& error) {
        OnEscape(name, error);
    }
    busy_ = false;
    emit Freed();
    return true;
}

}  // namespace corvenna
