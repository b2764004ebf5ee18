#include "shell/picture.h"

#include <QPainter>

namespace corvenna {

namespace {

constexpr int WidthInLetters = 84;  // of the usual font, so that the picture grows with it

}  // namespace

Picture::Picture(QWidget* parent) : QWidget(parent), picture_(":/corvenna/tower-1440.png") {
    setAccessibleName(tr("A control tower at dusk"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize Picture::sizeHint() const {
    const int width = fontMetrics().averageCharWidth() * WidthInLetters;
    return {width, width * picture_.height() / picture_.width()};
}

void Picture::paintEvent(QPaintEvent*) {
    const QSizeF whole = QSizeF(picture_.size()).scaled(size(), Qt::KeepAspectRatioByExpanding);
    const QRectF place(QPointF((width() - whole.width()) / 2, (height() - whole.height()) / 2), whole);
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(place, picture_, QRectF(picture_.rect()));
}

void PutTitleOnPicture(QLabel& label, double size) {
    QFont font = label.font();
    font.setPointSizeF(font.pointSizeF() * size);
    font.setBold(true);
    font.setLetterSpacing(QFont::PercentageSpacing, 108);
    label.setFont(font);
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, QColor(0xf4f1e8));
    palette.setColor(QPalette::Window, QColor(0x0b, 0x12, 0x14, 0xb0));
    label.setPalette(palette);
    label.setAutoFillBackground(true);
    label.setMargin(label.fontMetrics().height() / 3);
    label.setAlignment(Qt::AlignCenter);
}

}  // namespace corvenna
