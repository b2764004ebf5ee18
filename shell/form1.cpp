#include "shell/form1.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

#include "shell/picture.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

}  // namespace

Form1::Form1(HandlerGate& gate, std::function<void()> startUp)
    : Window(gate, "Form1", "Corvenna v1.3"),
      timer1_(gate, "Timer1", 3000ms,
              {"The start",
               [this, startUp = std::move(startUp)] {
                   timer1_.Enable(false);
                   startUp();
               }},
              this) {
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    auto* const picture = new Picture;
    QLabel* const label1 = NewLabel("Label1", "CORVENNA VERSION 1.3");
    PutTitleOnPicture(*label1, 1.6);
    auto* const controls = new QVBoxLayout(picture);
    controls->setContentsMargins({});
    controls->addStretch();
    controls->addWidget(label1);
    setCentralWidget(picture);
    adjustSize();
    move(screen()->availableGeometry().center() - rect().center());
    timer1_.Enable(true);
}

}  // namespace corvenna
