#include "shell/form7.h"

#include <QDir>
#include <QGridLayout>
#include <QVBoxLayout>

#include "shell/screen_text.h"
#include "world/airport_database.h"
#include "world/scenery_scan.h"

namespace corvenna {

namespace {

constexpr std::string_view WrongFolder =
    "The directory or path that you selected is not your currently FS2002 main folder, because this program "
    "didn't found the FS2002.EXE file. Please try again.";
constexpr std::string_view ConfigurationCreated =
    "The creation process of the configuration file for this program was completed!";

constexpr int FoldersSeen = 10;

}  // namespace

Form7::Form7(HandlerGate& gate, ProgramFields& program, OperatorDesk& desk, Form7Events events)
    : Window(gate, "Form7", "Creating Configuration File"),
      program_(program),
      desk_(desk),
      events_(std::move(events)),
      drive1_(new DriveList),
      dir1_(new FolderList),
      text1_(new QLineEdit("-none-")),
      command1_(NewButton("Command1", "Create Configuration &File")) {
    LayOut();
    connect(drive1_, &QComboBox::activated, dir1_, [this] { dir1_->SetPath(drive1_->Root()); });
    connect(dir1_, &FolderList::PathChanged, this, [this](const QString& path) { text1_->setText(path); });
    connect(text1_, &QLineEdit::textChanged, this, [this] {
        if (!text1_->hasFocus()) DropRootSeparator();  // not under the hands of him who types on
    });
    connect(text1_, &QLineEdit::editingFinished, this, &Form7::DropRootSeparator);
    OnClick(command1_, "The creation of the configuration", [this] { CreateConfiguration(); });
    AddAboutMenu(events_.ShowAbout);
}

void Form7::LayOut() {
    drive1_->setObjectName("Drive1");
    dir1_->setObjectName("Dir1");
    dir1_->setAccessibleName(tr("Folder"));
    dir1_->setMinimumHeight(dir1_->fontMetrics().lineSpacing() * FoldersSeen);
    text1_->setObjectName("Text1");
    text1_->setMinimumWidth(text1_->fontMetrics().averageCharWidth() * 50);

    QGroupBox* const frame1 = NewFrame("Frame1", "Getting FS2002 Path");
    auto* const choice = new QGridLayout(frame1);
    choice->addWidget(drive1_, 0, 0, 1, 2);
    choice->addWidget(dir1_, 1, 0, 1, 2);
    choice->addWidget(NewLabelFor(text1_, "Label1", "Current &Path:"), 2, 0);
    choice->addWidget(text1_, 2, 1);
    choice->addWidget(NewLabel("Label2", "Example:"), 3, 0);
    choice->addWidget(NewLabel("Label3", "C:\\Program Files\\Microsoft Games\\FS2002"), 3, 1);
    choice->setColumnStretch(1, 1);
    choice->setRowStretch(1, 1);

    auto* const controls = new QVBoxLayout;
    controls->addWidget(frame1, 1);
    controls->addWidget(command1_, 0, Qt::AlignRight);
    SetControls(controls, 0);
}

void Form7::Load() {
    RemoveAirports(program_.AppFolder);
    dir1_->SetPath(QDir::currentPath());
    drive1_->ShowDriveOf(QDir::currentPath());
    show();
    dir1_->setFocus();
}

void Form7::DropRootSeparator() {
    const std::string folder = ToPath(text1_->text());
    const std::string without = WithoutRootSeparator(folder);
    if (without != folder) text1_->setText(FromPath(without));
}

void Form7::CreateConfiguration() {
    DropRootSeparator();
    const std::string folder = ToPath(text1_->text());
    if (!IsSimFolder(folder)) return desk_.ShowBox(BoxIcon::Exclamation, WrongFolder);
    BeginDatabase(folder, program_.AppFolder);
    program_.SimFolder = folder;
    desk_.ShowBox(BoxIcon::Information, ConfigurationCreated);
    Depart();
    events_.FolderChosen();
}

}  // namespace corvenna
