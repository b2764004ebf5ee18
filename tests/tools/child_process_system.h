#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "tools/child_process.h"

namespace corvenna {

/// What every system has of a program that runs beside another.
struct ChildProcess::Process {
    /// Throws std::runtime_error when it cannot be started.
    explicit Process(const std::vector<std::string>& command);

    /// Ends the program, without asking it.
    ~Process();

    void Signal(int signal);
    void Kill();

    /// False when it reads nothing any more.
    bool Write(std::string_view text);
    void EndInput();

    /// Appends what it has printed, and waits a moment if that is nothing. False at the end of the output.
    bool ReadSome(std::string& into);

    /// Waits for the end. Status, or a signal's negative number.
    int Wait();

    /// From one look at what is done beside it to the next, while the program says nothing.
    static constexpr std::chrono::milliseconds LookInterval{5};

    struct Handles;
    std::unique_ptr<Handles> Of;
};

}  // namespace corvenna
