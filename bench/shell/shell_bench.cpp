#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <QApplication>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <filesystem>
#include <fstream>
#include <random>

#include "practice/made_up_airports.h"
#include "practice/world_writer.h"
#include "shell/airport_box.h"
#include "shell/form2.h"
#include "world/airport_database.h"
#include "world/scenery_scan.h"

namespace corvenna {
namespace {

constexpr int ListedAirports = 25000;
constexpr int MostAirports = 30000;

std::vector<std::string> Labels(int count) {
    std::vector<std::string> labels;
    labels.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        labels.push_back(fmt::format("Made-up Field {} ({:05})", i * 7919 % count, i));
    return labels;
}

/// A simulator's folder of made-up airports and their database, gone when the program ends.
class ScannedWorld {
  public:
    explicit ScannedWorld(int airports)
        : folder_(std::filesystem::temp_directory_path() /
                  fmt::format("corvenna-bench-{}", std::random_device{}())) {
        const std::vector<std::int16_t> noVariation(MagVarGridSize);
        std::filesystem::create_directories(AppFolder());
        WritePracticeWorld(SimFolder(), {}, MakeUpAirports(airports, 2002, noVariation), noVariation);
        std::ofstream(folder_ / "app" / TerrainName) << "47 -122 1000\n";
        BeginDatabase(SimFolder(), AppFolder());
        Station station;
        ScanObserver nobody;
        SceneryScan scan(station, SimFolder(), nobody);
        while (scan.Tick()) {
        }
        FinishDatabase(scan, SimFolder(), AppFolder());
    }
    ~ScannedWorld() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    ScannedWorld(const ScannedWorld&) = delete;
    ScannedWorld& operator=(const ScannedWorld&) = delete;

    std::string SimFolder() const { return (folder_ / "sim").string(); }
    std::string AppFolder() const { return (folder_ / "app").string(); }

  private:
    std::filesystem::path folder_;
};

/// From the end of the splash to a list that can be used.
void OpenTheAirportWindow(benchmark::State& state) {
    static const ScannedWorld world(ListedAirports);
    Station station;
    for (auto _ : state) {
        HandlerGate gate;
        ProgramFields program{
            .AppFolder = world.AppFolder(), .SimFolder = "", .AirportCount = 0, .DatabaseMissing = 0};
        DecideStartUp(program);
        Form6 progress(gate);
        progress.show();
        progress.PaintNow();
        Form2 form2(gate, program, station,
                    {.Inform = {}, .AirportChosen = {}, .EndProgram = {}, .ShowAbout = {}});
        form2.Load(progress);
        form2.PaintNow();
    }
}
BENCHMARK(OpenTheAirportWindow)->Unit(benchmark::kMillisecond);

/// One key typed into the box, with the offers painted.
void TypeAKey(benchmark::State& state) {
    AirportBox box;
    box.Fill(Labels(MostAirports));
    box.show();
    box.setFocus();
    const QString word = "field 12345";
    qsizetype typed = 0;
    for (auto _ : state) {
        if (typed == word.size()) {
            box.clearEditText();
            typed = 0;
        }
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, word.mid(typed++, 1));
        QApplication::sendEvent(box.lineEdit(), &press);
        QCoreApplication::processEvents();
    }
}
BENCHMARK(TypeAKey)->Unit(benchmark::kMillisecond);

void FillTheBox(benchmark::State& state) {
    const auto labels = Labels(MostAirports);
    AirportBox box;
    for (auto _ : state) box.Fill(labels);
}
BENCHMARK(FillTheBox)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace corvenna

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
