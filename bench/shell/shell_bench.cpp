#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <QApplication>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>

#include "bench/world/made_up_world.h"
#include "shell/airport_box.h"
#include "shell/form2.h"
#include "world/airport_database.h"
#include "world/magnetic_table.h"

namespace corvenna {
namespace {

constexpr int ListedAirports = 25000;
constexpr int MostAirports = 30000;

std::vector<std::string> Labels(int count) {
    std::vector<std::string> labels;
    for (int i = 0; i < count; ++i)
        labels.push_back(fmt::format("Made-up Field {} ({:05})", i * 7919 % count, i));
    return labels;
}

/// From the end of the splash to a list that can be used.
void OpenTheAirportWindow(benchmark::State& state) {
    static const MadeUpWorld world(ListedAirports);
    Station station;
    BeginDatabase(world.SimFolder(), world.AppFolder());
    LoadMagVarOf(world.SimFolder(), station);
    ScanObserver nobody;
    SceneryScan scan(station, world.SimFolder(), nobody);
    while (scan.Tick()) {
    }
    FinishDatabase(scan, world.SimFolder(), world.AppFolder());

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
