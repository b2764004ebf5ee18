#pragma once

#include <memory>

#include "link/memory/memory_session.h"

namespace corvenna {

/// What carries a session between those who take part in it.
class SessionCarrier {
  public:
    virtual ~SessionCarrier() = default;

    /// Access for one more participant. The first one is the host's.
    virtual std::unique_ptr<Session> MakeSession() = 0;

    /// Returns when everything that was sent has arrived, and everybody knows who is there.
    virtual void Settle() = 0;
};

/// Within this process, where everything arrives at once.
class MemoryCarrier final : public SessionCarrier {
  public:
    std::unique_ptr<Session> MakeSession() override { return std::make_unique<MemorySession>(network_); }
    void Settle() override {}

  private:
    MemoryNetwork network_;
};

}  // namespace corvenna
