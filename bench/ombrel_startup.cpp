// The ombrel program, ended by the startup probe when its first window has
// been painted.

#include "StartupProbe.h"

#include "shell/widgets/OmbrelMain.h"

#include <QMainWindow>

int main(int argc, char **argv)
{
    return Ombrel::runOmbrel(argc, argv, [](QMainWindow *window) { exitAfterFirstPaint(window); });
}
