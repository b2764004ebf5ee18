#pragma once

#include <QLabel>
#include <QPixmap>
#include <QWidget>

namespace corvenna {

/// The program's own picture, a control tower at dusk. It fills its widget, cut off where the shape differs.
class Picture final : public QWidget {
    Q_OBJECT

  public:
    explicit Picture(QWidget* parent = nullptr);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QPixmap picture_;
};

/// Makes a label a title that can be read on the picture, its letters so many times the usual size.
void PutTitleOnPicture(QLabel& label, double size);

}  // namespace corvenna
