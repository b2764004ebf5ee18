#include "fuzz/fuzz_input.h"
#include "world/errors.h"
#include "world/object_walker.h"

/// Any list offset in any bytes as a BGL file of objects. Each log begins with its head; an error stands at
/// the end of its log.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvenna;
    constexpr std::string_view Head = "BGL Filename: x.bgl\r\nObject offset: ";
    std::string_view file = AsText(data, size);
    const auto list = static_cast<std::int32_t>(TakeNumber(file, 4));
    const auto buffer = FileBuffer(file);
    try {
        WalkObjects(buffer, list, "x.bgl", [&](const std::string& log) {
            Require(log.starts_with(Head) && log.ends_with("\r\n"), "a log has a head and whole lines");
        });
    } catch (const OpcodeError& error) {
        Require(error.Log().starts_with(Head) && error.Log().ends_with("\r\n - Error Here!"),
                "the log of an error is marked at its end");
    } catch (const DamagedData&) {
    }
    return 0;
}
