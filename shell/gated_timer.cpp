#include "shell/gated_timer.h"

#include <utility>

namespace corvenna {

GatedTimer::GatedTimer(HandlerGate& gate, const char* objectName, std::chrono::milliseconds interval,
                       Body body, QObject* window)
    : QTimer(window), gate_(gate), body_(std::move(body)) {
    setObjectName(objectName);
    setInterval(interval);
    connect(this, &QTimer::timeout, this, &GatedTimer::Expire);
    connect(&gate_, &HandlerGate::Freed, this, &GatedTimer::ServeLate, Qt::QueuedConnection);
}

void GatedTimer::Enable(bool enabled) {
    if (enabled == isActive()) return;
    due_ = false;
    enabled ? start() : stop();
}

void GatedTimer::Expire() {
    if (isActive()) due_ = !gate_.Run(body_.Name, body_.Handle);
}

void GatedTimer::ServeLate() {
    if (std::exchange(due_, false)) Expire();
}

}  // namespace corvenna
