#pragma once

#include <QTimer>
#include <chrono>
#include <functional>
#include <string_view>

#include "shell/handler_gate.h"

namespace corvenna {

/// A timer of a window. When it comes due during a handler it is served once after it.
class GatedTimer final : public QTimer {
    Q_OBJECT

  public:
    struct Body {
        std::string_view Name;  ///< for complaints: "The scan"
        std::function<void()> Handle;
    };

    /// Off at first. objectName is the name of the control.
    GatedTimer(HandlerGate& gate, const char* objectName, std::chrono::milliseconds interval, Body body,
               QObject* window);

    /// Starts or stops it; one that runs already goes on.
    void Enable(bool enabled);

    /// What happens when it is due.
    void Expire();

  private:
    void ServeLate();

    HandlerGate& gate_;
    Body body_;
    bool due_ = false;
};

}  // namespace corvenna
