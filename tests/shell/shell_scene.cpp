#include "shell/shell_scene.h"

#include <QCloseEvent>
#include <QElapsedTimer>
#include <QWindow>
#include <thread>

#include "practice/magnetic_field.h"
#include "practice/practice_airports.h"
#include "practice/world_writer.h"
#include "shell/screen_text.h"
#include "world/airport_database.h"
#include "world/magnetic_table.h"
#include "world/scenery_scan.h"

namespace corvenna {

namespace {

/// The limit at which a test gives up what should have happened long before.
constexpr qint64 PatienceMs = 60'000;

constexpr std::uint32_t LoopbackIp = 0x7F000001;
constexpr double PracticeYear = 2002.0;

DirectPlayOptions SessionOptions(std::uint16_t hostPort) {
    DirectPlayOptions options;
    options.Sockets.BindIp = LoopbackIp;
    options.Sockets.Tcp = {};
    options.Sockets.Udp = {};
    options.Sockets.NameServer = hostPort;
    options.EnumerationSettle = directplay::milliseconds(0);
    return options;
}

}  // namespace

// ---- The operator

Operator::Operator() { qApp->installEventFilter(this); }
Operator::~Operator() { qApp->removeEventFilter(this); }

bool Operator::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Show) return false;
    if (auto* const box = qobject_cast<QMessageBox*>(watched)) {
        QMetaObject::invokeMethod(
            box, [this, box] { Answer(*box); }, Qt::QueuedConnection);
    } else if (auto* const question = qobject_cast<QDialog*>(watched)) {
        QMetaObject::invokeMethod(
            question, [this, question] { Answer(*question); }, Qt::QueuedConnection);
    }
    return false;
}

void Operator::Answer(QMessageBox& box) {
    Boxes.push_back({box.icon() == QMessageBox::Information ? BoxIcon::Information : BoxIcon::Exclamation,
                     ToBytes(box.text())});
    if (box.windowTitle() != "Corvenna v1.3") ADD_FAILURE() << "a box with another title";
    if (WhileOpen) WhileOpen(box);
    box.accept();
}

void Operator::Answer(QDialog& question) {
    auto* const host = question.findChild<QLineEdit*>("Host");
    if (host == nullptr) return;
    if (!Host) return question.reject();
    host->setText(QString::fromStdString(*Host));
    question.accept();
}

// ---- The program's folder

const std::string& PracticeSimFolder() {
    static const TempFolder folder;
    static const std::string path = [] {
        const std::filesystem::path data = CORVENNA_TEST_DATA;
        WritePracticeWorld(folder.Path("sim"), LoadPracticeAirports(data / "practice-airports.json"), {},
                           WholeDegreeTable(MagneticField::Load(data / "igrf.json"), PracticeYear));
        return folder.Path("sim");
    }();
    return path;
}

ShellScene::ShellScene(std::uint16_t hostPort)
    : before_(std::filesystem::current_path()), Program(SessionOptions(hostPort)) {
    App.Write(TerrainName, "46.85295 -121.76036 4392\n");
    std::filesystem::current_path(App.Path());
}

ShellScene::~ShellScene() { std::filesystem::current_path(before_); }

void ShellScene::HasDatabase() {
    Station station;
    LoadMagVarOf(PracticeSimFolder(), station);
    BeginDatabase(PracticeSimFolder(), App.Path());
    ScanObserver nobody;
    SceneryScan scan(station, PracticeSimFolder(), nobody);
    while (scan.Tick()) {
    }
    FinishDatabase(scan, PracticeSimFolder(), App.Path());
}

// ---- The windows

std::vector<std::string> ShellScene::Open() const {
    std::vector<std::string> names;
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        const auto* const window = qobject_cast<Window*>(widget);
        if (window != nullptr && window->isVisible()) names.push_back(window->objectName().toStdString());
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool ShellScene::IsOpen(const char* window) const {
    const auto open = Open();
    return std::find(open.begin(), open.end(), window) != open.end();
}

Window& ShellScene::FindWindow(const char* name) const {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        auto* const window = qobject_cast<Window*>(widget);
        if (window != nullptr && window->isVisible() && window->objectName() == name) return *window;
    }
    throw std::runtime_error(std::string(name) + " is not open");
}

void ShellScene::CloseBox(const char* window) {
    QCloseEvent event;
    QApplication::sendEvent(FindWindow(window).windowHandle(), &event);
}

void ShellScene::Fire(const char* window, const char* timer) {
    GatedTimer& due = Timer(window, timer);
    if (!due.isActive()) throw std::runtime_error(std::string(timer) + " is off");
    due.Expire();
}

bool ShellScene::Until(const std::function<bool()>& isSo) {
    QElapsedTimer since;
    since.start();
    while (!isSo()) {
        if (since.elapsed() > PatienceMs) return false;
        QCoreApplication::processEvents();
        std::this_thread::yield();
    }
    return true;
}

// ---- The way

void ShellScene::Starts() {
    Program.Start();
    Fire("Form1", "Timer1");
}

void ShellScene::ChoosesSimFolder() {
    Text("Form7", "Text1").setText(FromPath(PracticeSimFolder()));
    Press("Form7", "Command1");
}

void ShellScene::Scans() {
    while (Timer("Form2", "Scan_Bgl").isActive()) Fire("Form2", "Scan_Bgl");
}

void ShellScene::Chooses(const char* label) {
    Find<QComboBox>("Form2", "Combo1").setEditText(label);
    Press("Form2", "Command1");
    Fire("Form2", "Wait_for_Close");
}

void ShellScene::SearchesThisComputer() {
    List("Form3", "List1").setCurrentRow(1);
    Press("Form3", "Command1");
}

/// The timer fires less than thirty times, so that the request is not repeated, at growing intervals.
void ShellScene::AwaitsAnswer(const std::function<bool()>& isThere) {
    double intervalMs = 5;
    for (int fires = 1; fires < 30 && !isThere(); ++fires, intervalMs *= 1.25) {
        QElapsedTimer since;
        since.start();
        Until([&] { return since.elapsed() > static_cast<qint64>(intervalMs); });
        Fire("Form3", "Timer1");
    }
}

void ShellScene::Joins() {
    List("Form3", "List2").setCurrentRow(0);
    Press("Form3", "Command2");
    AwaitsAnswer([this] { return IsOpen("Form4"); });
}

void ShellScene::OpensStation(const char* label) {
    HasDatabase();
    Starts();
    Chooses(label);
    SearchesThisComputer();
    Joins();
}

}  // namespace corvenna
