#pragma once

#include <QObject>
#include <exception>
#include <functional>
#include <string_view>

namespace corvenna {

/// Lets one handler run at a time, each to its end. All timers and controls of the windows go through it, so
/// that nothing runs while a message box is open or while a handler lets the windows be painted: the event
/// loops which do that are within a handler. Windows' thread.
class HandlerGate final : public QObject {
    Q_OBJECT

  public:
    /// Hears what escapes a handler, with the handler's name. No other handler runs before it returns.
    std::function<void(std::string_view name, const std::exception&)> OnEscape;

    /// Runs a handler, unless another one is running: then it is not run, and the result is false. The name
    /// is for complaints: "The scan".
    bool Run(std::string_view name, const std::function<void()>& handler);

    /// From here on nothing runs any more.
    void CloseForGood() { closed_ = true; }

    bool Busy() const { return busy_ || closed_; }

  signals:
    /// A handler has ended, and the next one may run.
    void Freed();

  private:
    bool busy_ = false;
    bool closed_ = false;
};

}  // namespace corvenna
