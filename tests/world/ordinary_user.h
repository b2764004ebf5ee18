#pragma once

#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace corvenna {

/// As long as it lives, the program has the rights of an ordinary user, to whom permissions matter, even when
/// the tests run as root.
class OrdinaryUser {
  public:
    OrdinaryUser() {
        constexpr uid_t Nobody = 65534;
        if (wasRoot_ && seteuid(Nobody) != 0) throw std::runtime_error("root can't act as somebody else");
    }
    ~OrdinaryUser() {
        if (wasRoot_ && seteuid(0) != 0) std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  private:
    bool wasRoot_ = geteuid() == 0;
};

}  // namespace corvenna
