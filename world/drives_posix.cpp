#include "world/drives.h"

namespace corvenna {

std::vector<std::string> ListDrives() { return {}; }

}  // namespace corvenna
