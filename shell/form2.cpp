#include "shell/form2.h"

#include <QGridLayout>
#include <QVBoxLayout>

#include "shell/screen_text.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr qsizetype MostSkipsInTip = 30;

/// The last file that was passed over stands in the line, the others in its tip.
QString SkipsLine(const std::vector<std::string>& skips) {
    const QString last = ReportToScreen(skips.back());
    if (skips.size() == 1) return QObject::tr("Skipped: %1").arg(last);
    return QObject::tr("%1 scenery files were skipped. The last one: %2").arg(skips.size()).arg(last);
}

QString SkipsTip(const std::vector<std::string>& skips) {
    QStringList lines;
    for (const std::string& skip : skips) {
        if (lines.size() == MostSkipsInTip) {
            lines.append("...");
            break;
        }
        lines.append(ReportToScreen(skip));
    }
    return lines.join('\n');
}

}  // namespace

Form2::Form2(HandlerGate& gate, ProgramFields& program, Station& station, Form2Events events)
    : Window(gate, "Form2", "Settings"),
      events_(std::move(events)),
      window_(program, station,
              {.Repaint =
                   [this] {
                       ShowForm();
                       PaintNow();
                   },
               .Loading =
                   [this](std::string_view step) {
                       progress_->ShowStep(ToScreen(step));
                       progress_->PaintNow();
                   },
               .Inform = events_.Inform,
               .EndProgram = events_.EndProgram,
               .List = [this](const auto& labels) { combo1_->Fill(labels); }}),
      combo1_(new AirportBox),
      command1_(NewButton("Command1", "&Next")),
      command2_(NewButton("Command2", "E&xit")),
      label2_(NewLabel("Label2", "Done!")),
      text1_(new QLineEdit),
      progressBar1_(new QProgressBar),
      drive1_(new DriveList(this)),
      scanBgl_(gate, "Scan_Bgl", 5ms,
               {"The scan",
                [this] {
                    window_.RunScanBgl();
                    ShowForm();
                }},
               this),
      waitForClose_(gate, "Wait_for_Close", 3000ms, {"The change to the session", [this] { HandOver(); }},
                    this) {
    LayOut();
    OnClick(command1_, "The preparation of the station", [this] {
        window_.SelectAirport(combo1_->SelectedLabel());
        ShowForm();
    });
    OnClick(command2_, "The end", [this] { window_.Exit(); });
    AddAboutMenu(events_.ShowAbout);
}

void Form2::LayOut() {
    combo1_->setObjectName("Combo1");
    text1_->setObjectName("Text1");
    text1_->setReadOnly(true);
    text1_->setFocusPolicy(Qt::ClickFocus);
    progressBar1_->setObjectName("ProgressBar1");
    progressBar1_->setAccessibleName(tr("Progress"));
    progressBar1_->setTextVisible(false);
    drive1_->setObjectName("Drive1");
    drive1_->hide();  // the scan asks for it only where folders are on network drives with letters

    QGroupBox* const frame1 = NewFrame("Frame1", "All airports of the FS world");
    auto* const choice = new QGridLayout(frame1);
    choice->addWidget(combo1_, 0, 0, 1, 3);
    choice->setColumnStretch(0, 1);
    choice->addWidget(command1_, 1, 1);
    choice->addWidget(command2_, 1, 2);

    auto* const progress = new QGridLayout;
    progress->addWidget(NewLabel("Label1", "Status:"), 0, 0);
    progress->addWidget(label2_, 0, 1);
    progress->addWidget(NewLabelFor(text1_, "Label3", "Scanning:"), 1, 0);
    progress->addWidget(text1_, 1, 1);
    progress->addWidget(progressBar1_, 2, 0, 1, 2);
    progress->setColumnStretch(1, 1);

    auto* const controls = new QVBoxLayout;
    controls->addWidget(frame1);
    controls->addLayout(progress);
    controls->addStretch();
    SetControls(controls, 2);
}

void Form2::Load(Form6& progress) {
    progress_ = &progress;
    window_.Load();
    progress_ = nullptr;
    progress.Depart();
    ShowForm();
    show();
    combo1_->setFocus();
}

/// Label2 locks and frees the inputs, whoever has written it.
void Form2::ShowForm() {
    const AirportForm& form = window_.Form();
    label2_->setText(ToScreen(form.Label2));
    for (QWidget* const input : std::initializer_list<QWidget*>{combo1_, command1_, command2_}) {
        input->setEnabled(form.InputsEnabled());
    }
    text1_->setText(ToScreen(form.Text1));
    text1_->setCursorPosition(0);
    progressBar1_->setRange(0, form.ProgressMaximum);
    progressBar1_->setValue(std::min(form.ProgressValue, form.ProgressMaximum));
    scanBgl_.Enable(form.ScanBgl);
    waitForClose_.Enable(form.WaitForClose);
    if (!window_.Skips().empty()) Tell(SkipsLine(window_.Skips()), SkipsTip(window_.Skips()));
}

void Form2::HandOver() {
    waitForClose_.Enable(false);
    Depart();
    events_.AirportChosen();
}

void Form2::OnCloseBox() { window_.Unload(); }

}  // namespace corvenna
