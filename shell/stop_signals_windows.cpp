#include <QCoreApplication>

#include "shell/stop_signals.h"

namespace corvenna {

struct StopSignals::Platform {};

StopSignals::StopSignals() = default;
StopSignals::~StopSignals() = default;

/// When the user logs off or the computer shuts down, this is said once that is settled, and the program is
/// gone as soon as it has been heard.
void StopSignals::Watch(std::function<void()> stop) {
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, std::move(stop));
}

}  // namespace corvenna
