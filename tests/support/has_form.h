#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <string>

namespace corvenna {

/// A whole text of the form of a regular expression, as the standard library understands them: the test
/// library's own matcher knows no brackets on Windows.
MATCHER_P(HasForm, form, std::string("has the form ") + form) {
    return std::regex_match(std::string(arg), std::regex(form));
}

}  // namespace corvenna
