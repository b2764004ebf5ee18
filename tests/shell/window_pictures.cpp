// Takes the pictures of all windows that stand in docs/pictures, on the way from the first run to a station.
//   QT_QPA_PLATFORM=offscreen window-pictures FOLDER [--dark]

#include <QAction>
#include <QDir>
#include <QPixmap>
#include <QStyleFactory>
#include <iostream>

#include "shell/airport_box.h"
#include "shell/form6.h"
#include "shell/host_thread.h"
#include "shell/shell_scene.h"

namespace {

using namespace corvenna;

QPalette DarkPalette() {
    QPalette palette(QColor(0x35, 0x38, 0x3c), QColor(0x2a, 0x2d, 0x31));
    palette.setColor(QPalette::Base, QColor(0x1f, 0x21, 0x24));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x6f, 0xb5));
    palette.setColor(QPalette::PlaceholderText, QColor(0x9a, 0x9d, 0xa2));
    return palette;
}

class Album {
  public:
    explicit Album(const QDir& folder) : folder_(folder) {}

    void Take(QWidget& widget, const char* name) {
        QCoreApplication::processEvents();
        const QString file = folder_.filePath(QString(name) + ".png");
        if (!widget.grab().save(file)) throw std::runtime_error("can't write " + file.toStdString());
    }

  private:
    QDir folder_;
};

/// It stands for as long as the airports are read, which with a practice world is no time at all.
void TakeProgress(Album& album) {
    HandlerGate gate;
    auto* const progress = new Form6(gate);
    progress->show();
    album.Take(*progress, "form6");
    progress->Depart();
    QCoreApplication::sendPostedEvents(progress, QEvent::DeferredDelete);
}

void TakeAll(Album& album) {
    TakeProgress(album);
    HostThread host;
    ShellScene scene(host.Port());
    std::filesystem::create_directory(scene.App.Path("FS2002"));
    scene.Program.Start();
    album.Take(scene.FindWindow("Form1"), "form1");
    scene.Fire("Form1", "Timer1");
    scene.Text("Form7", "Text1").setText("/home/atc/FS2002");
    album.Take(scene.FindWindow("Form7"), "form7");
    scene.ChoosesSimFolder();
    for (int ticks = 0; ticks < 6; ++ticks) scene.Fire("Form2", "Scan_Bgl");
    album.Take(scene.FindWindow("Form2"), "form2-scan");
    scene.Scans();
    scene.Find<AirportBox>("Form2", "Combo1").setEditText("Seattle-Tacoma Intl (KSEA)");
    album.Take(scene.FindWindow("Form2"), "form2");
    scene.Chooses("Seattle-Tacoma Intl (KSEA)");
    scene.FindWindow("Form3").findChild<QAction*>("abot1")->trigger();
    album.Take(scene.FindWindow("Form5"), "form5");
    scene.Press("Form5", "Command1");
    scene.SearchesThisComputer();
    scene.List("Form3", "List2").setCurrentRow(0);
    album.Take(scene.FindWindow("Form3"), "form3");
    scene.Joins();
    album.Take(scene.FindWindow("Form4"), "form4");
    scene.Press("Form4", "Command2");
    album.Take(scene.FindWindow("Form4"), "form4-monitoring");
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QStringList arguments = QApplication::arguments();
    if (arguments.removeAll("--dark") > 0) {
        QApplication::setStyle(QStyleFactory::create("Fusion"));
        QApplication::setPalette(DarkPalette());
    }
    if (arguments.size() != 2 || !QDir().mkpath(arguments[1])) {
        std::cerr << "Usage: window-pictures FOLDER [--dark]\n";
        return 2;
    }
    try {
        Album album(QDir(QDir(arguments[1]).absolutePath()));
        TakeAll(album);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "window-pictures: " << error.what() << '\n';
        return 1;
    }
}
