#pragma once

#include <functional>
#include <string_view>

namespace corvenna {

/// Told now and then how far long work has come: what is being done, and the part done from 0 to 1.
using Progress = std::function<void(std::string_view step, double done)>;

}  // namespace corvenna
