#pragma once

#include <cstddef>

/// What the system says about this program's share of it.
namespace corvenna {

/// Bytes that the program has taken from the heap and not given back.
std::size_t HeapBytesInUse();

/// Whether this program may have so many files and sockets open, once it has asked for as many as are
/// allowed.
bool MayOpen(std::size_t files);

/// Why a test is skipped where NothingMoreOpens does not hold.
inline constexpr const char* NoSuchLimit = "this system does not limit the number of open sockets";

/// As long as it lives, this program can open no file and no socket beyond those that are open.
class NothingMoreOpens {
  public:
    NothingMoreOpens();
    ~NothingMoreOpens();
    NothingMoreOpens(const NothingMoreOpens&) = delete;
    NothingMoreOpens& operator=(const NothingMoreOpens&) = delete;

    /// False where the system has no such limit.
    bool Holds() const { return holds_; }

  private:
    bool holds_ = false;
    unsigned long long before_ = 0;
};

}  // namespace corvenna
