// A Qt program that does nothing.

#include "started.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    endStarted();
}
