#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QWindow>

#include "shell/handler_gate.h"

namespace corvenna {

/// Keeps the windows painted while a handler waits for the network. Nothing can be operated meanwhile;
/// Escape or a close box gives up, and the window is closed when the handler has ended.
class Patience final : public QObject {
    Q_OBJECT

  public:
    explicit Patience(HandlerGate& gate);

    /// To be called every now and then by who waits. False: the operator gives up.
    bool KeepWaiting();

  signals:
    /// So many whole seconds have passed in the handler in hand, from 1 on.
    void Waiting(int seconds);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void EndOfHandler();

    QElapsedTimer since_;
    int secondsTold_ = 0;
    bool givesUp_ = false;
    QPointer<QWindow> closing_;
};

}  // namespace corvenna
