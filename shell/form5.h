#pragma once

#include "shell/window.h"

namespace corvenna {

/// About the program.
class Form5 final : public Window {
    Q_OBJECT

  public:
    explicit Form5(HandlerGate& gate);
};

}  // namespace corvenna
