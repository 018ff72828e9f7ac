#include "shell/widgets/OmbrelMain.h"

int main(int argc, char **argv)
{
    return Ombrel::runOmbrel(argc, argv);
}
