#include "shell/patience.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <utility>

namespace corvenna {

Patience::Patience(HandlerGate& gate) { connect(&gate, &HandlerGate::Freed, this, &Patience::EndOfHandler); }

bool Patience::KeepWaiting() {
    if (!since_.isValid()) since_.start();
    const int seconds = static_cast<int>(since_.elapsed() / 1000);
    if (seconds > secondsTold_) emit Waiting(secondsTold_ = seconds);
    QCoreApplication::instance()->installEventFilter(this);
    QCoreApplication::processEvents();
    QCoreApplication::instance()->removeEventFilter(this);
    return !std::exchange(givesUp_, false);
}

/// Sees events as windows get them, before their controls do.
bool Patience::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::Close:
            closing_ = qobject_cast<QWindow*>(watched);
            givesUp_ = true;
            event->ignore();
            return true;
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) givesUp_ = true;
            return true;
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
            return true;
        default:
            return false;
    }
}

void Patience::EndOfHandler() {
    since_.invalidate();
    secondsTold_ = 0;
    givesUp_ = false;
    if (closing_) closing_->close();
    closing_ = nullptr;
}

}  // namespace corvenna
