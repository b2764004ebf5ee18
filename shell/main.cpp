#include <QApplication>

#include "shell/shell.h"
#include "shell/stop_signals.h"

int main(int argc, char** argv) {
    corvenna::StopSignals stopSignals;
    QApplication application(argc, argv);
    corvenna::Shell shell;
    QObject::connect(&shell, &corvenna::Shell::Ended, &application, &QCoreApplication::exit);
    stopSignals.Watch([&shell] { shell.Stop(); });
    shell.Start();
    return QApplication::exec();
}
