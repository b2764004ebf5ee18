#include "shell/form3.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "shell/screen_text.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr int RowsSeen = 4;
constexpr int LettersSeen = 50;

QListWidget* NewList(const char* objectName) {
    auto* const list = new QListWidget;
    list->setObjectName(objectName);
    list->setUniformItemSizes(true);
    list->setTabKeyNavigation(false);
    list->setMinimumHeight(list->fontMetrics().lineSpacing() * (RowsSeen + 1));
    list->setMinimumWidth(list->fontMetrics().averageCharWidth() * LettersSeen);
    return list;
}

std::optional<std::size_t> SelectedRow(const QListWidget& list) {
    const auto rows = list.selectionModel()->selectedRows();
    if (rows.isEmpty()) return std::nullopt;
    return static_cast<std::size_t>(rows.first().row());
}

/// Nobody hears of a list that is filled.
void ShowList(QListWidget& list, const std::vector<std::string>& texts,
              const std::optional<std::size_t>& selected) {
    const QSignalBlocker silence(list);
    QStringList rows;
    for (const std::string& text : texts) rows.append(ToScreen(text));
    QStringList shown;
    for (int row = 0; row < list.count(); ++row) shown.append(list.item(row)->text());
    if (rows != shown) {
        list.clear();
        list.addItems(rows);
    }
    if (selected && SelectedRow(list) != selected) list.setCurrentRow(static_cast<int>(*selected));
}

}  // namespace

Form3::Form3(HandlerGate& gate, Station& station, SessionObjects& objects, OperatorDesk& desk,
             Form3Events events)
    : Window(gate, "Form3", "Connecting to FS Multiplayer Session"),
      events_(std::move(events)),
      joining_(station, objects, desk,
               {.Repaint =
                    [this] {
                        ShowForm();
                        PaintNow();
                    },
                .Connected = events_.Connected,
                .EndProgram = events_.EndProgram}),
      text2_(new QLineEdit("-None-")),
      list1_(NewList("List1")),
      command1_(NewButton("Command1", "&Search for FS Multiplayer Sessions")),
      list2_(NewList("List2")),
      command2_(NewButton("Command2", "&Join Session")),
      command3_(NewButton("Command3", "&Close")),
      label6_(NewLabel("Label6", "Disconnected")),
      timer1_(gate, "Timer1", 1000ms,
              {"The request to join",
               [this] {
                   joining_.RunTimer();
                   ShowForm();
               }},
              this) {
    LayOut();
    Connect();
    AddAboutMenu(events_.ShowAbout);
}

void Form3::LayOut() {
    text2_->setObjectName("Text2");

    QGroupBox* const frame1 = NewFrame("Frame1", "Multiplayer Settings");
    auto* const settings = new QGridLayout(frame1);
    settings->addWidget(NewLabelFor(text2_, "Label2", "Ca&llsign:"), 0, 0);
    settings->addWidget(text2_, 0, 1);
    settings->addWidget(NewLabel("Label1", "Type of Connections:"), 1, 0, 1, 2);
    settings->addWidget(NewLabelFor(list1_, "Label3", "&Type of Connection:"), 2, 0, Qt::AlignTop);
    list1_->setMaximumHeight(list1_->minimumHeight());
    settings->addWidget(list1_, 2, 1);
    settings->addWidget(command1_, 3, 1);
    settings->setColumnStretch(1, 1);

    QGroupBox* const frame2 = NewFrame("Frame2", "List of FS Multiplayer Sessions");
    auto* const sessions = new QGridLayout(frame2);
    sessions->addWidget(NewLabelFor(list2_, "Label4", "A&vaible Sessions:"), 0, 0, 1, 3);
    sessions->addWidget(list2_, 1, 0, 1, 3);
    sessions->addWidget(command2_, 2, 1);
    sessions->addWidget(command3_, 2, 2);
    sessions->setColumnStretch(0, 1);

    auto* const status = new QHBoxLayout;
    status->addWidget(NewLabel("Label5", "Status:"));
    status->addWidget(label6_, 1);

    auto* const controls = new QVBoxLayout;
    controls->addWidget(frame1);
    controls->addWidget(frame2, 1);
    controls->addLayout(status);
    SetControls(controls, 3);
}

void Form3::Connect() {
    connect(text2_, &QLineEdit::textChanged, this,
            [this](const QString& text) { joining_.WriteNickname(ToBytes(text)); });
    connect(list1_, &QListWidget::itemSelectionChanged, this, &Form3::ChooseConnection);
    connect(list1_, &QListWidget::itemClicked, this, &Form3::ChooseConnection);  // also when it is chosen
    connect(list2_, &QListWidget::itemSelectionChanged, this, [this] {
        const auto row = SelectedRow(*list2_);
        if (row) joining_.SelectSession(*row);
    });
    On(command1_, "The search", &Joining::Search);
    On(command2_, "The way into the session", &Joining::Join);
    On(command3_, "The end", &Joining::Close);
}

void Form3::ChooseConnection() {
    const auto row = SelectedRow(*list1_);
    if (row) Gate().Run("The choice of the connection", [this, row] { joining_.SelectConnection(*row); });
}

/// What was told about an earlier try goes.
void Form3::On(QPushButton* button, std::string_view name, void (Joining::*handler)()) {
    OnClick(button, name, [this, handler] {
        Tell("");
        (joining_.*handler)();
        ShowForm();
    });
}

void Form3::Load() {
    joining_.Load();
    show();
    list1_->setFocus();
}

void Form3::ShowForm() {
    const JoiningForm& form = joining_.Form();
    ShowList(*list1_, form.List1, form.List1Selected);
    ShowList(*list2_, form.List2, form.List2Selected);
    if (ToBytes(text2_->text()) != form.Text2) text2_->setText(ToScreen(form.Text2));
    label6_->setText(ToScreen(form.Label6));
    timer1_.Enable(form.Timer1);
    for (const std::string& notice : joining_.TakeNotices()) Tell(ReportToScreen(notice));
}

void Form3::TellWaiting(int seconds) {
    Tell(tr("Waiting for the network: %1 s. Escape gives up.").arg(seconds));
}

}  // namespace corvenna
