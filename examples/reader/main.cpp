#include <exampleapplication.h>

int main(int argc, char *argv[])
{
    return runExample(argc, argv, QUrl("qrc:/reader/main.qml"));
}
