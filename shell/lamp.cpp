#include "shell/lamp.h"

#include <QPainter>
#include <QPainterPath>

namespace corvenna {

namespace {

/// Lines across a square in both directions. They grow with it, as the lines of a brush do not.
void Hatch(QPainter& painter, const QRectF& square) {
    constexpr int LinesEachWay = 7;
    const double step = 2 * square.width() / (LinesEachWay + 1);
    for (int i = 1; i <= LinesEachWay; ++i) {
        const double along = i * step;
        painter.drawLine(square.topLeft() + QPointF(along, 0), square.topLeft() + QPointF(0, along));
        painter.drawLine(square.topRight() - QPointF(along, 0), square.topRight() + QPointF(0, along));
    }
}

}  // namespace

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
    QPainterPath outline;
    if (outline_ == Outline::Circle) {
        outline.addEllipse(place);
    } else {
        outline.addRoundedRect(place, line, line);
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (fill_ == Qt::SolidPattern) {
        painter.fillPath(outline, colour_);
    } else {
        painter.setClipPath(outline);
        painter.setPen(QPen(colour_, line / 2));
        Hatch(painter, place);
        painter.setClipping(false);
    }
    painter.strokePath(outline, QPen(palette().color(QPalette::WindowText), line));
}

}  // namespace corvenna
