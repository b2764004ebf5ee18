#include "link/run_tick.h"

#include <fmt/format.h>

#include "station/spare_list.h"

namespace corvenna {

void RunTick(const std::function<void()>& tick, const std::function<void(std::string_view)>& tellOperator) {
    try {
        tick();
    } catch (const EmptyListError& error) {
        tellOperator(fmt::format("The rest of this tick was skipped: {}.", error.what()));
    }
}

}  // namespace corvenna
