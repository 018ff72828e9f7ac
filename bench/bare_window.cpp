// The floor of the startup benchmark: the least a Qt Widgets program does to
// show a main window of the same size, ended by the same probe.

#include "StartupProbe.h"

#include <QApplication>
#include <QMainWindow>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.resize(1280, 800);
    exitAfterFirstPaint(&window);
    window.show();
    return QApplication::exec();
}
