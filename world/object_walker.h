#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace corvenna {

/// The walk met an opcode that it can't step over. `what` is the message for people; Log is what had been
/// logged of the object, with the error marked at its end.
class OpcodeError : public std::runtime_error {
  public:
    OpcodeError(std::string log, const std::string& message)
        : std::runtime_error(message), log_(std::move(log)) {}

    const std::string& Log() const { return log_; }

  private:
    std::string log_;
};

/// Walks the opcodes of all scenery objects that the object list at an offset leads to, and hands out a log
/// of each object: the file's name, the object's offset, its opcodes. The bytes of an object are not
/// understood; what is known is how long each opcode is. `buffer` holds the file and one byte more, `name`
/// stands for it in the log. Throws OpcodeError at an unknown opcode, DamagedData where offsets lead out of
/// the file, an object has no length, or the entries lead to the same objects again and again. Any thread.
void WalkObjects(std::span<const std::uint8_t> buffer, std::int64_t listOffset, std::string_view name,
                 const std::function<void(const std::string& log)>& takeLog);

}  // namespace corvenna
