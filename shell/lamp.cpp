#include "shell/lamp.h"

#include <QPainter>

namespace corvenna {

Lamp::Lamp(Outline outline, QRgb colour, const QString& accessibleName) : outline_(outline), colour_(colour) {
    setAccessibleName(accessibleName);
    setToolTip(accessibleName);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Minimum);
}

void Lamp::SetFill(Qt::BrushStyle fill) {
    fill_ = fill;
    setAccessibleDescription(fill == Qt::SolidPattern ? tr("on") : tr("off"));
    update();
}

QSize Lamp::sizeHint() const {
    const int side = fontMetrics().height() * 3;
    return {side, side};
}

void Lamp::paintEvent(QPaintEvent*) {
    const double side = std::min(width(), height()) * 0.8;
    const double line = side / 16;
    const QRectF place(width() / 2.0 - side / 2, height() / 2.0 - side / 2, side, side);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::WindowText), line));
    painter.setBrush(QBrush(colour_, fill_));
    if (outline_ == Outline::Circle) {
        painter.drawEllipse(place);
    } else {
        painter.drawRoundedRect(place, line, line);
    }
}

}  // namespace corvenna
