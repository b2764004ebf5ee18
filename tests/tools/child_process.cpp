#include "tools/child_process.h"

#include <gtest/gtest.h>

#include "tools/child_process_system.h"

namespace corvenna {

ChildProcess::ChildProcess(const std::vector<std::string>& command)
    : process_(std::make_unique<Process>(command)) {}

ChildProcess::~ChildProcess() = default;

void ChildProcess::Signal(int signal) { process_->Signal(signal); }

void ChildProcess::Type(const std::string& line) { ASSERT_TRUE(process_->Write(line + "\n")); }

void ChildProcess::EndInput() { process_->EndInput(); }

std::string ChildProcess::WaitFor(const std::string& words, const std::function<void()>& meanwhile) {
    const auto deadline = std::chrono::steady_clock::now() + Patience;
    while (std::chrono::steady_clock::now() < deadline) {
        while (next_ < Lines.size()) {
            const std::string& line = Lines[next_++];
            if (line.find(words) != std::string::npos) return line;
        }
        if (meanwhile) meanwhile();
        if (!ReadSome()) break;
    }
    ADD_FAILURE() << "no line says \"" << words << "\":\n" << Output();
    return "";
}

int ChildProcess::WaitForEnd(const std::function<void()>& meanwhile) {
    const auto deadline = std::chrono::steady_clock::now() + Patience;
    while (ReadSome()) {
        if (meanwhile) meanwhile();
        if (std::chrono::steady_clock::now() < deadline) continue;
        ADD_FAILURE() << "it does not end:\n" << Output();
        process_->Kill();
    }
    return process_->Wait();
}

std::string ChildProcess::Output() const {
    std::string all;
    for (const std::string& line : Lines) all += line + "\n";
    return all;
}

bool ChildProcess::ReadSome() {
    if (!process_->ReadSome(pending_)) return false;
    for (auto end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
        std::string line = pending_.substr(0, end);
        if (line.ends_with('\r')) line.pop_back();
        Lines.push_back(std::move(line));
        pending_.erase(0, end + 1);
    }
    return true;
}

}  // namespace corvenna
