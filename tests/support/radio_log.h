#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "station/tick.h"

namespace corvenna {

/// Takes down what the tick sends.
class RadioLog final : public ChatSender {
  public:
    struct Entry {
        std::string Frequency;
        std::string Text;
        std::vector<std::int32_t> Audience;
    };

    void SendChat(std::string_view frequency, std::string_view text,
                  std::span<const std::int32_t> audience) override {
        Entries.push_back({std::string(frequency), std::string(text), {audience.begin(), audience.end()}});
    }

    std::vector<Entry> Entries;
};

}  // namespace corvenna
