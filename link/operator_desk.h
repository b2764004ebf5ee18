#pragma once

#include <string_view>

namespace corvenna {

inline constexpr std::string_view ProgramTitle = "Corvenna v1.3";

enum class BoxIcon { Information, Exclamation };

/// What the operator is shown, whatever the program shows it with. Station's thread.
class OperatorDesk {
  public:
    virtual ~OperatorDesk() = default;

    /// A modal message box, title ProgramTitle. Returns when the operator has closed it; until then no
    /// handler of the station may run.
    virtual void ShowBox(BoxIcon icon, std::string_view text) = 0;
};

}  // namespace corvenna
