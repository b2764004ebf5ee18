#include <sys/wait.h>

#include <cstdlib>

#include "support/shell_command.h"

namespace corvenna {

int RunShell(const std::string& line) { return WEXITSTATUS(std::system(line.c_str())); }

}  // namespace corvenna
