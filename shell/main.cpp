#include <QApplication>

#include "shell/shell.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    corvenna::Shell shell;
    QObject::connect(&shell, &corvenna::Shell::Ended, &application, &QCoreApplication::exit);
    shell.Start();
    return QApplication::exec();
}
