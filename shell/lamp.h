#pragma once

#include <QBrush>
#include <QColor>
#include <QWidget>

namespace corvenna {

/// A lamp of the station window. Shape and filling tell as much as the colour does, for those who see no
/// colours.
class Lamp final : public QWidget {
    Q_OBJECT

  public:
    enum class Outline { Circle, Square };

    Lamp(Outline outline, QRgb colour, const QString& accessibleName);

    /// Solid: on. Cross-hatched: off.
    void SetFill(Qt::BrushStyle fill);
    Qt::BrushStyle Fill() const { return fill_; }

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Outline outline_;
    QColor colour_;
    Qt::BrushStyle fill_ = Qt::DiagCrossPattern;
};

}  // namespace corvenna
