#pragma once

#include "shell/gated_timer.h"
#include "shell/window.h"

namespace corvenna {

/// The picture at the start. After three seconds the program decides where to go on.
class Form1 final : public Window {
    Q_OBJECT

  public:
    Form1(HandlerGate& gate, std::function<void()> startUp);

  private:
    GatedTimer timer1_;
};

}  // namespace corvenna
