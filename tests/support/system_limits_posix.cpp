#include <malloc.h>
#include <sys/resource.h>

#include <utility>

#include "support/system_limits.h"

namespace corvenna {

std::size_t HeapBytesInUse() { return mallinfo2().uordblks; }

bool MayOpen(std::size_t files) {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return false;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
    getrlimit(RLIMIT_NOFILE, &limit);
    return limit.rlim_cur >= files;
}

namespace {

/// Gives the number that was allowed before.
rlim_t Allow(rlim_t files) {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlim_t before = std::exchange(limit.rlim_cur, files);
    setrlimit(RLIMIT_NOFILE, &limit);
    return before;
}

}  // namespace

NothingMoreOpens::NothingMoreOpens() : holds_(true), before_(Allow(1)) {}

NothingMoreOpens::~NothingMoreOpens() { Allow(before_); }

}  // namespace corvenna
