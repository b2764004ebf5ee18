#include "shell/form4.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "link/run_tick.h"
#include "shell/screen_text.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

/// A colour as the console gives it: red in the lowest byte, then green, then blue.
QColor ToColour(std::int32_t colour) { return {colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF}; }

Qt::BrushStyle ToBrush(StationConsole::Lamp lamp) {
    return lamp == StationConsole::Lamp::Solid ? Qt::SolidPattern : Qt::DiagCrossPattern;
}

constexpr QRgb LampRed = 0xFFD02020;
constexpr QRgb LampGreen = 0xFF18A038;

}  // namespace

Form4::Form4(HandlerGate& gate, Station& station, SessionObjects& objects, OperatorDesk& desk,
             std::function<void()> closed)
    : Window(gate, "Form4", "ATC Station Window"),
      objects_(objects),
      closed_(std::move(closed)),
      window_(station, objects, desk,
              {.Repaint =
                   [this] {
                       ShowConsole();
                       PaintNow();
                   },
               .Closed = [this] { stationClosed_ = true; },
               .Transmitted = {}}),
      command2_(NewButton("Command2", "&Start Monitoring Traffic")),
      command1_(NewButton("Command1", "S&top Monitoring Traffic")),
      command3_(NewButton("Command3", "&Close the ATC Station")),
      label1_(NewLabel("Label1", "NOT MONITORING TRAFFIC")),
      shape1_(new QFrame),
      shape2_(new Lamp(Lamp::Outline::Circle, LampRed, tr("Red lamp: monitoring"))),
      shape3_(new Lamp(Lamp::Outline::Square, LampGreen, tr("Green lamp: not monitoring"))),
      atcTimer_(gate, "ATC_Timer", 1000ms,
                {"The tick",
                 [this] {
                     RunTick([this] { Handle([this] { window_.RunAtcTimer(); }); },
                             [this](std::string_view line) { Tell(ReportToScreen(line)); });
                 }},
                this),
      connectionTimer_(gate, "Connection_Timer", 100ms,
                       {"The pump", [this] { Handle([this] { window_.RunConnectionTimer(); }); }}, this),
      refreshPlayers_(
          gate, "Refresh_Players", 30000ms,
          {"The refresh of the player list", [this] { Handle([this] { window_.RunRefreshPlayers(); }); }},
          this) {
    LayOut();
    OnClick(command2_, "The start of monitoring", [this] { Handle([this] { window_.StartMonitoring(); }); });
    OnClick(command1_, "The stop of monitoring", [this] { Handle([this] { window_.StopMonitoring(); }); });
    OnClick(command3_, "The closing of the station", [this] { Handle([this] { window_.Close(); }); });
}

void Form4::LayOut() {
    shape1_->setObjectName("Shape1");
    shape1_->setFrameShape(QFrame::StyledPanel);
    shape2_->setObjectName("Shape2");
    shape3_->setObjectName("Shape3");
    auto* const lamps = new QVBoxLayout(shape1_);
    lamps->addWidget(shape2_);
    lamps->addWidget(shape3_);

    QFont large = label1_->font();
    large.setPointSizeF(large.pointSizeF() * 1.4);
    large.setBold(true);
    label1_->setFont(large);
    label1_->setAlignment(Qt::AlignCenter);
    label1_->setAutoFillBackground(true);  // the colours of its letters need a light ground
    label1_->setFrameShape(QFrame::StyledPanel);
    label1_->setMargin(label1_->fontMetrics().height() / 2);
    label1_->setMinimumWidth(label1_->fontMetrics().horizontalAdvance("NOT MONITORING TRAFFIC") * 6 / 5);

    auto* const console = new QVBoxLayout;
    console->addWidget(label1_);
    console->addWidget(command2_);
    console->addWidget(command1_);
    console->addWidget(command3_);

    auto* const controls = new QHBoxLayout;
    controls->addWidget(shape1_);
    controls->addLayout(console, 1);
    SetControls(controls, 2);
}

void Form4::Load() {
    window_.Load();
    show();
    command2_->setFocus();
}

/// The controls follow the console; a station that has closed takes its window with it.
void Form4::Handle(const std::function<void()>& handler) {
    handler();
    ShowConsole();
    if (!stationClosed_) return;
    Depart();
    closed_();
}

void Form4::ShowConsole() {
    const StationConsole& console = window_.Console();
    label1_->setText(ToScreen(console.Label1));
    QPalette palette = label1_->palette();
    palette.setColor(QPalette::Window, QColor(0xf4f1e8));
    palette.setColor(QPalette::WindowText, ToColour(console.Label1Colour));
    label1_->setPalette(palette);
    shape2_->SetFill(ToBrush(console.Shape2));
    shape3_->SetFill(ToBrush(console.Shape3));
    command1_->setEnabled(console.Command1Enabled);
    command2_->setEnabled(console.Command2Enabled);
    command3_->setEnabled(console.Command3Enabled);
    atcTimer_.Enable(console.AtcTimer);
    connectionTimer_.Enable(console.ConnectionTimer);
    refreshPlayers_.Enable(console.RefreshPlayers);
    if (!objects_.Dp) return;
    for (const std::string& notice : objects_.Dp->TakeNotices()) Tell(ReportToScreen(notice));
}

void Form4::LeaveSession() {
    if (window_.Loaded()) window_.Close();
}

void Form4::OnCloseBox() {
    Handle([this] { window_.Unload(); });
}

}  // namespace corvenna
