#pragma once

#include <string>

#include "world/temp_folder.h"

namespace corvenna {

/// What came of a program: its exit status and what it printed on both outputs. The ends of the lines of its
/// complaints are those of a posix system everywhere.
struct ShellOutcome {
    int Status = -1;
    std::string Out, Err;
};

/// Runs a line in a folder as the system's shell understands it. Words with blanks stand between double
/// quotation marks. What is printed is left there in out.txt and err.txt.
ShellOutcome RunInShell(const TempFolder& folder, const std::string& line);

/// The same without the ends of lines that Windows makes.
std::string WithoutReturns(std::string text);

/// Runs a line where the program itself works, and gives the exit status.
int RunShell(const std::string& line);

}  // namespace corvenna
