#pragma once

#include <functional>
#include <string_view>

namespace corvenna {

/// Runs the body of the tick. A removal from an empty queue costs no more than the rest of this tick, and
/// the operator one line; any other error is thrown on. Station's thread.
void RunTick(const std::function<void()>& tick, const std::function<void(std::string_view)>& tellOperator);

}  // namespace corvenna
