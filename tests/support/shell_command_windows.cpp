#include <cstdlib>

#include "support/shell_command.h"

namespace corvenna {

/// The shell takes the outermost quotation marks away.
int RunShell(const std::string& line) { return std::system(('"' + line + '"').c_str()); }

}  // namespace corvenna
