#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

/// What all fuzz targets need. A target asserts a property of what it reads, by Require; that nothing
/// crashes, hangs or eats memory the fuzzer and the sanitizers see to.
namespace corvenna {

/// Ends the run as a finding.
inline void Require(bool holds, const char* property) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", property);
    std::abort();
}

/// A little-endian number off the front of an input, for what is not part of the bytes to be read; 0 when
/// the input is too short for it.
inline std::uint32_t TakeNumber(std::string_view& input, std::size_t bytes) {
    if (input.size() < bytes) return 0;
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        number |= static_cast<std::uint32_t>(static_cast<unsigned char>(input[i])) << 8 * i;
    }
    input.remove_prefix(bytes);
    return number;
}

inline std::string_view AsText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Pieces one behind the other.
inline std::string Joined(const std::vector<std::string_view>& pieces) {
    std::string whole;
    for (const std::string_view piece : pieces) whole += piece;
    return whole;
}

/// A BGL file as the scan holds it: in memory of its own, one byte longer than the file.
inline std::vector<std::uint8_t> FileBuffer(std::string_view file) {
    std::vector<std::uint8_t> buffer;
    buffer.reserve(file.size() + 1);
    buffer.assign(file.begin(), file.end());
    buffer.push_back(0);
    return buffer;
}

}  // namespace corvenna
