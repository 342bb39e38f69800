// A reading application, from its start to the result of its first lookup.

#include "sample.h"
#include "started.h"

#include <gesture_api/gestureserviceprovider.h>

#include <QCoreApplication>

using namespace vellix::gesture;

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const DefaultFeaturesProvider features;
    GestureServiceProvider provider(&features);
    provider.setAppId("sample");
    if (!findFirst(*provider.service()))
        return 1;
    endStarted();
}
