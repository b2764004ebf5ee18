#include "shell/shell.h"

#include <fmt/format.h>

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <algorithm>

#include "shell/host_question.h"
#include "shell/screen_text.h"
#include "world/files.h"

namespace corvenna {

namespace {

constexpr std::string_view TerrainMissing =
    "The world_terrain.db file is missing. Please reinstall this ATC program again.";

/// All windows, also those that are to be deleted.
std::vector<Window*> AllWindows() {
    std::vector<Window*> windows;
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (auto* const window = qobject_cast<Window*>(widget)) windows.push_back(window);
    }
    return windows;
}

QIcon ProgramIcon() {
    QIcon icon;
    for (const QFileInfo& picture : QDir(":/corvenna").entryInfoList({"corvenna-*.png"})) {
        icon.addFile(picture.filePath());
    }
    return icon;
}

bool AnyIsOpen(const std::vector<Window*>& windows) {
    return std::any_of(windows.begin(), windows.end(),
                       [](const Window* window) { return window->isVisible(); });
}

}  // namespace

Shell::Shell(DirectPlayOptions session) {
    QApplication::setDesktopFileName("corvenna");
    QApplication::setWindowIcon(ProgramIcon());
    QApplication::setQuitOnLastWindowClosed(false);
    session.AskHost = [] { return AskForHost(QApplication::activeWindow()); };
    session.KeepWaiting = [this] { return patience_.KeepWaiting(); };
    objects_.MakeRoot = [session = std::move(session)] { return std::make_unique<DirectPlayRoot>(session); };
    gate_.OnEscape = [this](auto name, const auto& error) { OnEscape(name, error); };
    connect(&gate_, &HandlerGate::Freed, this, &Shell::EndWithoutWindows);
    connect(&patience_, &Patience::Waiting, this, [this](int seconds) {
        if (form3_) form3_->TellWaiting(seconds);
    });
}

Shell::~Shell() {
    gate_.CloseForGood();
    for (const Window* const window : AllWindows()) delete window;
}

// ---- From window to window

void Shell::Start() {
    form1_ = new Form1(gate_, [this] { StartUp(); });
    form1_->show();
}

void Shell::StartUp() {
    program_.AppFolder = WithoutLastSeparator(ToPath(QDir::currentPath()));
    if (!FindFolder(program_.AppFolder)) program_.AppFolder = std::string(".");  // its name can't be spelled
    switch (DecideStartUp(program_)) {
        case StartUp::TerrainMissing:
            ShowBox(BoxIcon::Exclamation, TerrainMissing);
            return End(0);
        case StartUp::ChooseSimFolder:
            form1_->Depart();
            return OpenFolderChooser();
        case StartUp::ChooseAirport:
            form1_->Depart();
            return OpenAirports();
    }
}

void Shell::OpenFolderChooser() {
    (new Form7(gate_, program_, *this,
               {.FolderChosen = [this] { OpenAirports(); }, .ShowAbout = [this] { ShowAbout(); }}))
        ->Load();
}

void Shell::OpenAirports() {
    auto* const progress = new Form6(gate_);
    progress->show();
    progress->PaintNow();
    auto* const form2 = new Form2(gate_, program_, station_,
                                  {.Inform = [this](auto text) { ShowBox(BoxIcon::Information, text); },
                                   .AirportChosen = [this] { OpenSessionSearch(); },
                                   .EndProgram = [this] { End(0); },
                                   .ShowAbout = [this] { ShowAbout(); }});
    form2->Load(*progress);
}

void Shell::OpenSessionSearch() {
    form3_ = new Form3(gate_, station_, objects_, *this,
                       {.Connected = [this] { OpenStation(); },
                        .EndProgram = [this] { End(0); },
                        .ShowAbout = [this] { ShowAbout(); }});
    form3_->Load();
}

/// An admission that comes twice opens one station.
void Shell::OpenStation() {
    if (form4_) return;
    form3_->Depart();
    form4_ = new Form4(gate_, station_, objects_, *this, [this] { OpenAirports(); });
    form4_->Load();
}

void Shell::ShowAbout() {
    if (!form5_) form5_ = new Form5(gate_);
    form5_->show();
    form5_->raise();
    form5_->activateWindow();
}

// ---- Boxes, and the end

void Shell::ShowBox(BoxIcon icon, std::string_view text) {
    QMessageBox box(QApplication::activeWindow());
    box.setObjectName("OperatorBox");
    box.setWindowModality(Qt::ApplicationModal);
    box.setWindowTitle(ToScreen(ProgramTitle));
    box.setIcon(icon == BoxIcon::Information ? QMessageBox::Information : QMessageBox::Warning);
    box.setTextFormat(Qt::PlainText);
    box.setText(ReportToScreen(text));
    box.exec();
}

void Shell::Stop() {
    const auto end = [this] {
        LeaveSession();
        End(0);
    };
    if (gate_.Run("The end", end)) return;
    if (QWidget* const box = QApplication::activeModalWidget()) box->close();
    connect(&gate_, &HandlerGate::Freed, this, &Shell::Stop,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

void Shell::LeaveSession() {
    if (form4_) form4_->LeaveSession();
    if (form3_) form3_->LeaveSession();
}

/// The session is left before the operator reads why.
void Shell::OnEscape(std::string_view name, const std::exception& error) {
    LeaveSession();
    ShowBox(BoxIcon::Exclamation, fmt::format("{} failed: {}\n\nThe program ends.", name, error.what()));
    End(1);
}

void Shell::EndWithoutWindows() {
    if (!status_ && !AnyIsOpen(AllWindows())) End(0);
}

void Shell::End(int status) {
    gate_.CloseForGood();
    status_ = status;
    for (Window* const window : AllWindows()) window->Depart();
    emit Ended(status);
}

}  // namespace corvenna
