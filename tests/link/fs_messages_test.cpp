#include "link/fs_messages.h"

#include <gtest/gtest.h>

namespace corvenna {
namespace {

TEST(FsMessages, AChatOf3IsTheDigitAndTwoZerosWithAPayloadSizeOf2) {
    const DirectPlayMessage chat = WriteChat("3");
    const std::vector<std::byte> expected = {
        std::byte{0x23}, std::byte{0x10}, std::byte{0}, std::byte{0},  // 4131
        std::byte{2},    std::byte{0},    std::byte{0}, std::byte{0},  // PayloadSize
        std::byte{0x33}, std::byte{0},    std::byte{0},
    };
    EXPECT_EQ(std::vector<std::byte>(chat.Bytes().begin(), chat.Bytes().end()), expected);
}

}  // namespace
}  // namespace corvenna
