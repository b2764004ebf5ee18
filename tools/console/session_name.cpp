#include "tools/console/session_name.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "station/code_page.h"

namespace corvenna {

namespace {

bool IsControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

}  // namespace

std::string NameInSession(std::string_view utf8, std::string_view what) {
    std::string name = Utf8ToCodePage(utf8);
    if (name.size() > LongestSessionName) {
        throw std::invalid_argument(fmt::format("{} has {} characters; there is room for {} at most", what,
                                                name.size(), LongestSessionName));
    }
    if (CodePageToUtf8(name) != utf8) {
        throw std::invalid_argument(
            fmt::format("{} \"{}\" has characters that simulators don't know; only those of the Windows-1252 "
                        "code page can be used",
                        what, utf8));
    }
    if (std::any_of(name.begin(), name.end(), IsControl)) {
        throw std::invalid_argument(fmt::format("{} has a control character in it", what));
    }
    return name;
}

}  // namespace corvenna
