#include "tools/console/station_timers.h"

#include <fmt/format.h>

#include <algorithm>

namespace corvenna {

StationTimers::StationTimers(std::vector<StationTimer> timers, std::chrono::milliseconds now) {
    for (StationTimer& timer : timers) {
        const auto due = now + timer.Interval;
        entries_.push_back({std::move(timer), due});
    }
}

void StationTimers::Run(std::chrono::milliseconds now) {
    for (Entry& entry : entries_) {
        if (now < entry.Due) continue;
        entry.Due += entry.Timer.Interval;
        if (entry.Due <= now) entry.Due = now + entry.Timer.Interval;
        if (!entry.Timer.Enabled()) continue;
        try {
            entry.Timer.Handle();
        } catch (const std::exception& error) {
            throw HandlerError(fmt::format("{} failed: {}", entry.Timer.Name, error.what()));
        }
    }
}

std::chrono::milliseconds StationTimers::NextDue() const {
    return std::min_element(entries_.begin(), entries_.end(),
                            [](const Entry& a, const Entry& b) { return a.Due < b.Due; })
        ->Due;
}

}  // namespace corvenna
