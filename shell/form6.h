#pragma once

#include <QLineEdit>

#include "shell/window.h"

namespace corvenna {

/// Progress, while the airport window loads.
class Form6 final : public Window {
    Q_OBJECT

  public:
    explicit Form6(HandlerGate& gate);

    void ShowStep(const QString& step) { text1_->setText(step); }

  private:
    QLineEdit* text1_;
};

}  // namespace corvenna
