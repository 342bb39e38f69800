// A reading application up to the answer to its first touch.

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
    const Gesture *found =
            provider.service()->findGesture("menu", Gesture::Tap, Gesture::NoDirection, QPointF(0.1, 0.5));
    return found ? tellStarted() : 1;
}
